// The public class that announces an alarm.
#pragma once

#include "display/AlarmForm.h"
#include "server/ClassTable.h"
#include "server/modGlobals.h"

#include <functional>

namespace kintar {

class objAlarmPopUp final : public PublicObject {
public:
    using FormOf = std::function<display::AlarmForm&()>;

    /// Raises run-time error 6 where the shared count overflows, and counts nothing then.
    objAlarmPopUp(modGlobals& globals, FormOf form);
    objAlarmPopUp(const objAlarmPopUp&) = delete;
    objAlarmPopUp& operator=(const objAlarmPopUp&) = delete;
    ~objAlarmPopUp() override;

    /// Shows the text in the one window, whichever text it showed before.
    void EventString(const std::string& text);
    /// 0x00BBGGRR, or a system colour by index where negative.
    void ForeColor(std::int32_t colour) { foreColor_ = colour; }
    void WsHandle(std::int32_t window) { wsHandle_ = window; }
    void LocName(const std::string& name) { locName_ = name; }
    /// True unless the operator ticked the box that switches the pop-up off. Loads the window.
    [[nodiscard]] bool Enabled() const;

    static PublicClass describe(modGlobals& globals, const FormOf& form);

private:
    modGlobals& globals_;
    FormOf form_;
    std::string mTitle_;
    std::int32_t foreColor_ = 0;
    std::int32_t wsHandle_ = 0;
    std::string locName_;
};

} // namespace kintar
