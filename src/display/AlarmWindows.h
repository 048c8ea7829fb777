// The alarm pop-up's window at its place.
#pragma once

#include "display/frmAlarmPopUp.h"
#include "display/objAlarmPopUp.h"
#include "server/Forms.h"

namespace kintar {

/// Holds the default instance of the alarm window, at its place among the server's forms, for as
/// long as it lives.
class AlarmWindows {
public:
    AlarmWindows(modGlobals& globals, platform::WindowRequests& requests,
                 platform::SettingsStore& settings);
    AlarmWindows(const AlarmWindows&) = delete;
    AlarmWindows& operator=(const AlarmWindows&) = delete;
    ~AlarmWindows();

    /// This outlives the table that it goes to.
    PublicClass publicClass();
    DefaultInstance<frmAlarmPopUp>& popUp() { return popUp_; }

private:
    modGlobals& globals_;
    DefaultInstance<frmAlarmPopUp> popUp_;
};

} // namespace kintar
