// The board "In / Out Status": who of a list of names is in.
#pragma once

#include "base/LocaleFormats.h"
#include "platform/Platform.h"
#include "platform/qt/FormWindow.h"
#include "search/Board.h"
#include "search/BoardList.h"
#include "search/BoardRefresh.h"
#include "search/BoardTables.h"
#include "search/HolderReader.h"
#include "server/Companion.h"
#include "server/IgnoringErrors.h"
#include "server/modGlobals.h"

#include <QLabel>
#include <QPlainTextEdit>
#include <QTimer>
#include <cstdint>
#include <memory>
#include <string>

namespace kintar::search {

/// States are read anew every minute. A refresh is read aside, so that the windows go on, and never
/// runs beside another one.
class frmInOut : public platform::FormWindow, public PreparableForm {
public:
    /// All outlive the form.
    frmInOut(modGlobals& globals, platform::SettingsStore& settings, const LocaleFormats& formats);

    void LocGrp(std::int32_t value) { locGrp_ = value; }
    [[nodiscard]] std::int32_t LocGrp() const { return locGrp_; }
    /// The statement that selects the names: its rows carry at least `ID` and `Name`.
    void setSQL(const std::string& value) { sql_ = value; }
    [[nodiscard]] const std::string& SQL() const { return sql_; }

    /// Loads the form, fills the list and begins a refresh; that of a short list has ended when
    /// this returns. `showUdfs`: whether a click also shows the holder's user-defined fields.
    /// What cannot be read is reported and said in the window; it is no error of the caller.
    void LoadList(bool showUdfs);

    /// A tick of the refresh timer.
    void Timer1_Timer();
    /// Whether a refresh has begun and not ended.
    [[nodiscard]] bool isRefreshing() const { return refresh_ != nullptr; }

    [[nodiscard]] std::string formName() const override { return "frmInOut"; }
    std::vector<FormCaption> captions() override { return {}; }

    bool event(QEvent* event) override;

protected:
    void Load() override;
    void Unload() override;

private:
    void build();
    void FillList();
    void RefreshStates();
    /// Shows a refresh that has ended; nothing where none has.
    void refreshEnded();
    void lvNames_ItemClick(const QModelIndex& index);
    /// Reads and shows one holder's state.
    board::HolderState ReadState(std::size_t item);
    void showCaption(const board::HolderState& state, const std::string& name);
    void ShowUdfs(std::int32_t id);
    void showHeadCount();
    void report(const std::exception& error, const char* routine, QString& problem,
                const QString& what);
    void showProblems();

    modGlobals& globals_;
    platform::SettingsStore& settings_;
    LocaleFormats formats_;
    std::int32_t locGrp_ = 0;
    std::string sql_;
    bool showUdfs_ = false;

    board::Board board_;
    board::BoardTables tables_;
    board::CompanionStates states_;
    std::unique_ptr<board::BoardRefresh> refresh_;
    QString listProblem_;  ///< what could not be read when the list was loaded
    QString stateProblem_; ///< what the last refresh could not read
    QString clickProblem_; ///< what the last click could not read

    BoardList* lvNames_;
    QPlainTextEdit* Text_;
    QLabel* lblHeadCount_;
    QLabel* lblStatus_;
    QTimer Timer1_{this};
};

} // namespace kintar::search
