// The name search window.
#pragma once

#include "platform/qt/FormWindow.h"
#include "search/NameFill.h"
#include "search/NameListModel.h"
#include "search/NameSearchControls.h"
#include "search/NameSearchSurroundings.h"
#include "search/NameSort.h"
#include "search/PrintQueue.h"
#include "search/UdfList.h"

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

namespace kintar::search {

/// One shared window: the names found at the top, the detail of the current one below. Closing it
/// by its title bar is Cancel; only the end of an `objNameSearch`, or of any facade, unloads it.
class frmNameSearch final : public platform::FormWindow, public CalledFrom, private PreparableForm {
public:
    /// The surroundings outlive the form.
    explicit frmNameSearch(NameSearchSurroundings& surroundings);
    ~frmNameSearch() override;

    /// Whether the operator may read hidden fields here; kept for the list of fields. No, and a
    /// report, where that cannot be found out.
    bool CanViewUDF();
    /// Clears the list and gives both lists their columns.
    void MakeColumns();
    /// Fills the list from any statement whose first columns are `ID` and the name. What takes
    /// longer than a moment goes on after this returns, and says in the status line if it fails;
    /// what fails sooner is thrown, and leaves the list as it was.
    void PopulateListView(const std::string& sql) override;
    void PrintStatusRpt();
    void PrintWhoIsIn(std::int32_t loc);
    /// A new group stops a fill.
    void LocGrp(std::int32_t value);
    /// Passed on to the companion where it differs.
    void OprID(std::int32_t value);
    void ImageType(std::int32_t value) { imageType_ = value; }
    void NameSelMode(std::int16_t value) { mode_ = value; }

    /// Loads the form and hides it.
    void Hide();
    /// The caption to which the form returns; shown at once.
    void setCaption(const std::string& caption);
    /// Width and buttons by the mode.
    void applyMode();
    /// Puts the window before all others and 100 milliseconds later among the ordinary ones;
    /// `then` is called after that, or dropped with the form.
    void bringForward(std::function<void()> then);

    /// Whether a search, or the sorting of a long list, goes on.
    [[nodiscard]] bool isFilling() const { return fill_.isRunning() || sort_.isRunning(); }

protected:
    void Load() override;
    void Unload() override;
    void closeEvent(QCloseEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void changeEvent(QEvent* event) override;

private:
    [[nodiscard]] std::string formName() const override { return "frmNameSearch"; }
    std::vector<FormCaption> captions() override;

    void connectControls();
    void connectList();
    /// Runs a handler of a control: what it throws is reported, and said in the status line.
    void handle(const char* routine, const std::function<void()>& handler);
    [[nodiscard]] Database database();
    [[nodiscard]] std::string LoadNames();

    void cmdSearch_Click();
    void cmdOK_Click();
    void cmdCancel_Click();
    void cmdInOut_Click();
    void cmdUDF_Click();
    void cmdStop_Click();
    void Label_Click();
    void lvList_ColumnClick(int column);
    void lvList_ItemClick(int row);
    void lvUdf_DblClick(int row);

    void beginFill();
    void beginWait(const QString& words);
    void fillEnded();
    void fillIsThere(const std::function<void()>& fill);
    [[nodiscard]] bool isLongToSort(const Recordset& rows) const;
    void sortRows(Recordset rows);
    void showRows(const std::function<void()>& fill);
    void showSorted(int column, const std::function<void()>& sort);
    void endFill();
    void stopFill(const QString& words);
    void closeDialog();
    void clearList();
    void clearDetail();
    void ShowPhoto();
    void ShowCardStatus();
    void fillUdfList();
    void hideUdfs();
    void bringForwardWindow(QWidget& window, unsigned flags, std::function<void()> then);

    NameSearchSurroundings& surroundings_;
    modGlobals& globals_;
    NameSearchControls controls_;
    NameListModel model_;
    NameFill fill_;
    NameSort sort_;
    PrintQueue prints_;

    std::int32_t locGrp_ = 0;
    std::int32_t oprId_ = 0;
    std::int32_t imageType_ = 0;
    std::int16_t mode_ = 0;
    bool canViewUdf_ = false;
    std::string baseCaption_;
    std::string sql_;
    std::string photoTag_ = "0"; ///< `Lead1`'s: "0" where the photo must be loaded
    std::vector<UdfRow> udfRows_;
    bool filling_ = false;        ///< what happens in the list now is no click of the operator's
    bool isSortingShown_ = false; ///< what is being sorted is the list that is shown
    bool showStatusAfterFill_ = false;
};

} // namespace kintar::search
