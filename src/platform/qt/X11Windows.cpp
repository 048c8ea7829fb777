#include "platform/qt/X11Windows.h"

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <memory>

namespace kintar::platform {

namespace {

/// What xcb gives out is freed with free().
template <class Reply>
std::unique_ptr<Reply, void (*)(void*)> owned(Reply* reply) {
    return {reply, std::free};
}

// EWMH: who asks. An application asks for itself, a pager for the user.
constexpr std::uint32_t fromApplication = 1;
constexpr std::uint32_t fromPager = 2;
// EWMH: what to do with a state.
constexpr std::uint32_t removeState = 0;
constexpr std::uint32_t addState = 1;

} // namespace

void X11Windows::setTopmost(xcb_window_t window, bool topmost) {
    const xcb_window_t root = rootOf(window);
    if (root == XCB_NONE) {
        return;
    }
    if (hasWindowManager(root)) {
        tellManager(
            root, window, atom("_NET_WM_STATE"),
            {topmost ? addState : removeState, atom("_NET_WM_STATE_ABOVE"), 0, fromApplication, 0});
    }
    // A window that is no longer kept above falls behind what was raised meanwhile.
    raise(window);
    xcb_flush(connection_);
}

void X11Windows::activate(xcb_window_t window) {
    const xcb_window_t root = rootOf(window);
    if (root == XCB_NONE) {
        return;
    }
    if (hasWindowManager(root)) {
        tellManager(root, window, atom("_NET_ACTIVE_WINDOW"),
                    {fromPager, XCB_CURRENT_TIME, 0, 0, 0});
    } else {
        raise(window);
        xcb_set_input_focus(connection_, XCB_INPUT_FOCUS_PARENT, window, XCB_CURRENT_TIME);
    }
    xcb_flush(connection_);
}

xcb_window_t X11Windows::rootOf(xcb_window_t window) const {
    const auto geometry =
        owned(xcb_get_geometry_reply(connection_, xcb_get_geometry(connection_, window), nullptr));
    return geometry ? geometry->root : XCB_NONE;
}

bool X11Windows::hasWindowManager() const {
    return hasWindowManager(xcb_setup_roots_iterator(xcb_get_setup(connection_)).data->root);
}

bool X11Windows::hasWindowManager(xcb_window_t root) const {
    // The window named at the root must name itself, or its manager has gone.
    constexpr const char* check = "_NET_SUPPORTING_WM_CHECK";
    const xcb_window_t named = windowProperty(root, check);
    return named != XCB_NONE && windowProperty(named, check) == named;
}

xcb_window_t X11Windows::windowProperty(xcb_window_t holder, const char* property) const {
    const auto reply = owned(xcb_get_property_reply(
        connection_,
        xcb_get_property(connection_, 0, holder, atom(property), XCB_ATOM_WINDOW, 0, 1), nullptr));
    xcb_window_t found = XCB_NONE;
    if (reply && xcb_get_property_value_length(reply.get()) == sizeof found) {
        std::memcpy(&found, xcb_get_property_value(reply.get()), sizeof found);
    }
    return found;
}

void X11Windows::restore(xcb_window_t window) {
    if (rootOf(window) != XCB_NONE) {
        xcb_map_window(connection_, window);
        xcb_flush(connection_);
    }
}

void X11Windows::coverFullScreen(xcb_window_t window) {
    const xcb_window_t root = rootOf(window);
    if (root == XCB_NONE) {
        return;
    }
    const xcb_window_t active = windowProperty(root, "_NET_ACTIVE_WINDOW");
    if (active == window) {
        return;
    }
    if (active != XCB_NONE && fillsTheScreen(active, root)) {
        xcb_change_property(connection_, XCB_PROP_MODE_REPLACE, window, XCB_ATOM_WM_TRANSIENT_FOR,
                            XCB_ATOM_WINDOW, 32, 1, &active);
        raise(window);
    } else {
        xcb_delete_property(connection_, window, XCB_ATOM_WM_TRANSIENT_FOR);
    }
    xcb_flush(connection_);
}

bool X11Windows::fillsTheScreen(xcb_window_t window, xcb_window_t root) const {
    constexpr std::uint32_t mostStates = 64;
    const auto states =
        owned(xcb_get_property_reply(connection_,
                                     xcb_get_property(connection_, 0, window, atom("_NET_WM_STATE"),
                                                      XCB_ATOM_ATOM, 0, mostStates),
                                     nullptr));
    if (states) {
        const auto* found = static_cast<const xcb_atom_t*>(xcb_get_property_value(states.get()));
        const auto count = static_cast<std::size_t>(xcb_get_property_value_length(states.get())) /
                           sizeof(xcb_atom_t);
        if (std::find(found, found + count, atom("_NET_WM_STATE_FULLSCREEN")) != found + count) {
            return true;
        }
    }
    // Programs from before that state fill the screen by their size.
    const auto own =
        owned(xcb_get_geometry_reply(connection_, xcb_get_geometry(connection_, window), nullptr));
    const auto screen =
        owned(xcb_get_geometry_reply(connection_, xcb_get_geometry(connection_, root), nullptr));
    return own && screen && own->width >= screen->width && own->height >= screen->height;
}

xcb_atom_t X11Windows::atom(const char* name) const {
    const auto reply = owned(xcb_intern_atom_reply(
        connection_,
        xcb_intern_atom(connection_, 0, static_cast<std::uint16_t>(std::strlen(name)), name),
        nullptr));
    return reply ? reply->atom : xcb_atom_t{XCB_ATOM_NONE};
}

void X11Windows::tellManager(xcb_window_t root, xcb_window_t window, xcb_atom_t type,
                             const std::array<std::uint32_t, 5>& data) const {
    xcb_client_message_event_t message{};
    message.response_type = XCB_CLIENT_MESSAGE;
    message.format = 32;
    message.window = window;
    message.type = type;
    std::memcpy(message.data.data32, data.data(), sizeof message.data.data32);
    xcb_send_event(connection_, 0, root,
                   XCB_EVENT_MASK_SUBSTRUCTURE_REDIRECT | XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY,
                   reinterpret_cast<const char*>(&message));
}

void X11Windows::raise(xcb_window_t window) const {
    const std::uint32_t above = XCB_STACK_MODE_ABOVE;
    xcb_configure_window(connection_, window, XCB_CONFIG_WINDOW_STACK_MODE, &above);
}

} // namespace kintar::platform
