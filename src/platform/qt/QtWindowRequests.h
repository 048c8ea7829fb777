// Window requests on whatever platform the toolkit runs on.
#pragma once

#include "platform/WindowRequests.h"

namespace kintar::platform {

/// On X11 it speaks to the window manager through the EWMH protocol, or orders windows itself where
/// there is none. Elsewhere it asks the toolkit to raise the window and says once, on standard
/// error, that this is all.
class QtWindowRequests final : public WindowRequests {
public:
    void SetWindowPos(WindowId window, InsertAfter insertAfter, unsigned flags) override;
    void SetForegroundWindow(WindowId window) override;
    void ShowWindow(WindowId window, ShowCommand command) override;
    void CoverFullScreen(WindowId window) override;

private:
    void sayOnce(const char* what);

    bool said_ = false;
};

} // namespace kintar::platform
