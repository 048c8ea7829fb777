// What the alarm facade needs of its window.
#pragma once

#include <cstdint>
#include <string>

namespace kintar::display {

/// The default instance of `frmAlarmPopUp`, made and loaded where there is none. Naming it is
/// making it; members may throw.
class AlarmForm {
public:
    virtual ~AlarmForm() = default;
    /// The client's main window, as the platform numbers it. Only stored.
    virtual void WsHandle(std::int32_t window) = 0;
    /// The caption of `Label(1)`: the alarm.
    virtual void setAlarm(const std::string& text) = 0;
    virtual void show() = 0;
    virtual void setForeColor(std::int32_t colour) = 0;
    virtual void setCaption(const std::string& text) = 0;
    /// Above all windows, not moved, sized or activated.
    virtual void makeTopmost() = 0;
    /// Whether `chkDisAblePopUp` is ticked.
    [[nodiscard]] virtual bool disableTicked() = 0;
};

} // namespace kintar::display
