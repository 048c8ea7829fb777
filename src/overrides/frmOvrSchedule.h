// The window in which an operator edits the scheduled overrides of a point.
#pragma once

#include "overrides/OverrideEditor.h"
#include "overrides/OverrideForm.h"
#include "overrides/OverrideWindowServices.h"
#include "platform/qt/FormWindow.h"

#include <deque>
#include <functional>

class QFrame;
class QLabel;
class QPushButton;
class QTabBar;

namespace kintar {

class AdditionalDaysFrame;
class OverrideSideFrame;

/// Shows what the editor holds and hands it what the operator does. Done becomes true when it
/// unloads, by whatever way.
class frmOvrSchedule final : public platform::FormWindow,
                             public OverrideForm,
                             public PreparableForm {
public:
    explicit frmOvrSchedule(OverrideWindowServices services);

    void PointID(std::int32_t value) override { editor_.point.PointID = value; }
    void PointType(std::int16_t value) override { editor_.point.PointType = value; }
    void PointName(const std::string& value) override { editor_.point.PointName = value; }
    void LocName(const std::string& value) override { editor_.point.LocName = value; }
    void OprName(const std::string& value) override { editor_.point.OprName = value; }
    /// Raises run-time error 6 beyond 32 bits.
    void OprID(const std::string& value) override;
    void SecureOpt(bool value) override { editor_.point.SecureOpt = value; }
    void OpenOpt(bool value) override { editor_.point.OpenOpt = value; }
    void TZOpt(bool value) override { editor_.point.TZOpt = value; }
    void ArmOpt(bool value) override { editor_.point.ArmOpt = value; }
    void ByPassOpt(bool value) override { editor_.point.ByPassOpt = value; }
    void showEditor() override;
    void bringToFront(std::function<void()> afterwards) override;

    [[nodiscard]] std::string formName() const override { return "frmOvrSchedule"; }
    std::vector<FormCaption> captions() override { return {}; }

protected:
    void Load() override;
    void Unload() override;
    void keyPressEvent(QKeyEvent* event) override;

private:
    using Step = std::function<void()>;

    void makeControls();
    void makeErrorFrame();
    void makeFooter();
    void layOut();
    QPushButton* newButton(const char* name, const QString& caption, Step step);
    QLabel* newLabel(const char* name, const QString& text);
    void connectSide(OverrideSideFrame& frame, OverrideSide& side);
    void connectAdditionalDays();

    /// Runs a step of the operator's and shows what came of it. A step that comes while another
    /// one lets messages run waits for its end.
    void perform(Step step);
    /// As `perform`, but a change of what is being replaced is dropped.
    void performEdit(Step step);
    void cmdOK_Click();
    void cmdErrOK_Click();
    void Tab1_Click(int index);
    void completeEntries();

    void display();
    void displayError();
    void requestOrder(platform::InsertAfter insertAfter);

    OverrideWindowServices services_;
    OverrideEditor editor_;
    std::deque<Step> waiting_;
    bool running_ = false;
    bool shown_ = false;

    QTabBar* Tab1 = nullptr;
    QWidget* general_ = nullptr;
    OverrideSideFrame* startFrame_ = nullptr;
    OverrideSideFrame* stopFrame_ = nullptr;
    QFrame* errorFrame_ = nullptr;
    QLabel* errorText_ = nullptr;
    QPushButton* cmdErrOK = nullptr;
    AdditionalDaysFrame* additionalDays_ = nullptr;
    QLabel* operatorReadout_ = nullptr;
    QLabel* lblZone = nullptr;
    QLabel* lblNotice = nullptr;
    QPushButton* cmdDelete = nullptr;
    QPushButton* cmdNext = nullptr;
    QPushButton* cmdPrevious = nullptr;
    QPushButton* cmdCancel = nullptr;
    QPushButton* cmdOK = nullptr;
};

} // namespace kintar
