// The display subsystem: its windows' places.
#pragma once

#include "display/DisplayServices.h"
#include "display/frmKintar.h"
#include "server/Forms.h"

namespace kintar {

/// Holds the default instances of the display windows, at their places among the server's forms,
/// for as long as it lives.
class DisplayWindows {
public:
    explicit DisplayWindows(DisplayServices services);
    DisplayWindows(const DisplayWindows&) = delete;
    DisplayWindows& operator=(const DisplayWindows&) = delete;
    ~DisplayWindows();

    [[nodiscard]] const DisplayServices& services() const { return services_; }
    DefaultInstance<frmKintar>& kintar() { return kintar_; }

private:
    DisplayServices services_;
    DefaultInstance<frmKintar> kintar_;
};

} // namespace kintar
