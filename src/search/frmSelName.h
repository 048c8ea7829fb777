// The advanced search: criteria on four tabs, and the statement made of them.
#pragma once

#include "base/LocaleFormats.h"
#include "platform/Platform.h"
#include "platform/qt/FormWindow.h"
#include "search/CalledFrom.h"
#include "search/CriteriaPanes.h"
#include "search/UdfPane.h"
#include "server/Companion.h"
#include "server/modGlobals.h"

#include <QLabel>
#include <QPushButton>
#include <QStackedLayout>
#include <QTabBar>
#include <QVBoxLayout>
#include <cstdint>
#include <exception>
#include <optional>

namespace kintar::search {

/// OK hands the statement to the opener and closes the dialog; where the opener's list cannot be
/// filled the dialog stays, says so, and keeps all input. Cancel and the title bar close it.
class frmSelName : public platform::FormWindow, public PreparableForm {
public:
    /// All outlive the form.
    frmSelName(modGlobals& globals, const platform::Clock& clock, const LocaleFormats& formats);

    /// The location group; every list and statement is limited to it.
    void LocGrp(std::int32_t value) { locGrp_ = value; }
    [[nodiscard]] std::int32_t LocGrp() const { return locGrp_; }
    /// Who gets the statement; outlives the dialog. Without one, OK is a run-time error that the
    /// dialog shows.
    void setCalledFrom(CalledFrom* opener) { calledFrom_ = opener; }
    [[nodiscard]] CalledFrom* calledFrom() const { return calledFrom_; }

    /// Shows the dialog modeless, with the lists of the present location group. Database errors
    /// pass, and the dialog is not shown then.
    void Show();

    [[nodiscard]] std::string formName() const override { return "frmSelName"; }
    /// None: the load asks for its texts itself.
    std::vector<FormCaption> captions() override { return {}; }

    bool event(QEvent* event) override;
    /// Escape is Cancel; Enter presses the button that has the focus.
    void keyPressEvent(QKeyEvent* event) override;

protected:
    void Load() override;
    void Unload() override {}

private:
    void addPanes();
    void addButtons();
    void loadTexts();
    void loadContents();
    void LoadLists();
    void LoadSkills();
    void Tab1_Click(int tab);
    void cmdOK_Click();
    void findNames();
    [[nodiscard]] selection::SelectionCriteria criteria() const;
    [[nodiscard]] bool ownPopupIsOpen() const;

    modGlobals& globals_;
    const platform::Clock& clock_;
    CalledFrom* calledFrom_ = nullptr;
    std::int32_t locGrp_ = 0;
    std::optional<std::int32_t> loadedFor_;
    bool leftForOwnPopup_ = false;

    QVBoxLayout* rows_;
    QStackedLayout* panes_;
    QTabBar* Tab1_;
    NamesPane* names_;
    UdfPane* udf_;
    CardsPane* cards_;
    SkillsPane* skills_;
    QLabel* lblStatus_;
    QPushButton* cmdOK_;
    QPushButton* cmdCancel_;
};

} // namespace kintar::search
