// Requests to the window manager about the order of windows.
#pragma once

#include <cstdint>

namespace kintar::platform {

/// A window as the platform numbers it.
using WindowId = std::uintptr_t;

/// Where a window is put in the order of windows.
enum class InsertAfter : std::int8_t {
    Topmost = -1, ///< above all ordinary windows, and staying there
    Top = 0,      ///< the first of the ordinary windows
};

/// What a request leaves alone; added up.
inline constexpr unsigned noSize = 1;
inline constexpr unsigned noMove = 2;
inline constexpr unsigned noActivate = 16;
/// Shows a window that is hidden, in the same request.
inline constexpr unsigned showWindow = 64;

/// How a window is to be shown.
enum class ShowCommand : std::int8_t {
    Restore = 9, ///< at its former place and size where it is minimised
};

/// Requests are hints: a window manager may refuse them, and some platforms know none of them. They
/// never fail.
class WindowRequests {
public:
    virtual ~WindowRequests() = default;
    /// Puts a window into the order of windows. It is neither moved nor sized (both
    /// flags are always given); without `noActivate` it gets the focus as well.
    virtual void SetWindowPos(WindowId window, InsertAfter insertAfter, unsigned flags) = 0;
    /// Brings a window of any process to the front and gives it the focus, as a task bar does.
    virtual void SetForegroundWindow(WindowId window) = 0;
    /// Shows a window of any process that is minimised or hidden.
    virtual void ShowWindow(WindowId window, ShowCommand command) = 0;
    /// A topmost window of this process is to be seen also over a window that fills the screen and
    /// has the focus, which window managers keep above topmost ones. Takes no focus.
    virtual void CoverFullScreen(WindowId window) = 0;
};

} // namespace kintar::platform
