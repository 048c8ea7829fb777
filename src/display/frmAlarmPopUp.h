// The alarm's window: the text, the way to the workstation, the way out.
#pragma once

#include "display/AlarmForm.h"
#include "platform/Platform.h"
#include "platform/qt/FormWindow.h"
#include "server/Companion.h"
#include "server/modGlobals.h"

#include <optional>

class QCheckBox;
class QLabel;
class QPushButton;
class QScrollArea;
class QTimer;

namespace kintar {

/// Shown without taking the focus, so that what the operator is typing goes where it went. For a
/// second after each alarm, and for as long as a key is held down, keys do nothing in it: what was
/// meant for another window cannot dismiss it or switch it off.
class frmAlarmPopUp final : public platform::FormWindow,
                            public display::AlarmForm,
                            private PreparableForm {
    Q_OBJECT

public:
    frmAlarmPopUp(modGlobals& globals, platform::WindowRequests& requests,
                  platform::SettingsStore& settings);

    void WsHandle(std::int32_t window) override { wsHandle_ = window; }
    void setAlarm(const std::string& text) override;
    void show() override;
    void setForeColor(std::int32_t colour) override;
    void setCaption(const std::string& text) override;
    void makeTopmost() override;
    [[nodiscard]] bool disableTicked() override;

protected:
    void Load() override;
    void Unload() override {}
    void closeEvent(QCloseEvent* event) override;
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    [[nodiscard]] std::string formName() const override { return "frmAlarmPopUp"; }
    std::vector<FormCaption> captions() override { return {}; }
    void build();
    void nameControls();
    void connectControls();
    void switchToWorkstation();
    void disableChanged(bool ticked);
    void guardKeys();

    modGlobals& globals_;
    platform::WindowRequests& requests_;
    platform::SettingsStore& settings_;
    std::int32_t wsHandle_ = 0;
    std::optional<std::int32_t> foreColor_; ///< what the label shows
    QScrollArea* area_ = nullptr;
    QLabel* label_ = nullptr;
    QCheckBox* chkDisAblePopUp_ = nullptr;
    QPushButton* cmdSwitch_ = nullptr;
    QPushButton* cmdIgnore_ = nullptr;
    QTimer* keyGuard_ = nullptr;
};

} // namespace kintar
