// The order of windows on X11.
#pragma once

#include <xcb/xcb.h>

#include <array>
#include <cstdint>

namespace kintar::platform {

/// Requests over the toolkit's own connection, so that they stay in order with what the toolkit
/// sends. None of them fails or waits for a window to appear.
class X11Windows {
public:
    explicit X11Windows(xcb_connection_t* connection) : connection_(connection) {}

    /// Above all ordinary windows, or back among them; in front of the others of its kind.
    /// Neither maps, moves nor sizes the window, nor gives it the focus.
    void setTopmost(xcb_window_t window, bool topmost);
    /// To the front with the focus, as a task bar does; a window of any process.
    void activate(xcb_window_t window);
    /// Maps a window that is minimised or hidden; a window of any process.
    void restore(xcb_window_t window);
    /// Puts a window above the one that has the focus where that fills the screen: window managers
    /// keep such a window, and what is transient for it, above all others.
    void coverFullScreen(xcb_window_t window);
    /// Whether somebody manages the windows of the first screen.
    [[nodiscard]] bool hasWindowManager() const;

private:
    [[nodiscard]] xcb_window_t rootOf(xcb_window_t window) const;
    [[nodiscard]] bool hasWindowManager(xcb_window_t root) const;
    [[nodiscard]] xcb_atom_t atom(const char* name) const;
    void tellManager(xcb_window_t root, xcb_window_t window, xcb_atom_t type,
                     const std::array<std::uint32_t, 5>& data) const;
    void raise(xcb_window_t window) const;
    [[nodiscard]] xcb_window_t windowProperty(xcb_window_t holder, const char* property) const;
    [[nodiscard]] bool fillsTheScreen(xcb_window_t window, xcb_window_t root) const;

    xcb_connection_t* connection_;
};

} // namespace kintar::platform
