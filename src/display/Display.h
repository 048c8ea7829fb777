// The display subsystem: its windows' places.
#pragma once

#include "display/DisplayServices.h"
#include "display/frmKintar.h"
#include "server/Forms.h"

namespace kintar {

/// Holds the default instances of the display windows, at their places among the server's forms,
/// for as long as it lives.
class Display {
public:
    explicit Display(DisplayServices services);
    Display(const Display&) = delete;
    Display& operator=(const Display&) = delete;
    ~Display();

    [[nodiscard]] const DisplayServices& services() const { return services_; }
    DefaultInstance<frmKintar>& kintar() { return kintar_; }

private:
    DisplayServices services_;
    DefaultInstance<frmKintar> kintar_;
};

} // namespace kintar
