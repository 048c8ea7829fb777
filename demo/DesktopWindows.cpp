#include "demo/DesktopWindows.h"

#include <QByteArray>

#include <cstdlib>
#include <memory>
#include <vector>

#include <xcb/xcb.h>

namespace kintar::demo {

namespace {

struct Disconnect {
    void operator()(xcb_connection_t* connection) const { xcb_disconnect(connection); }
};
struct Free {
    void operator()(void* memory) const { std::free(memory); }
};
template <class T>
using Reply = std::unique_ptr<T, Free>;
using Connection = std::unique_ptr<xcb_connection_t, Disconnect>;

Connection connectToDisplay() {
    Connection connection(xcb_connect(nullptr, nullptr));
    if (xcb_connection_has_error(connection.get()) != 0) {
        connection.reset();
    }
    return connection;
}

xcb_atom_t atom(xcb_connection_t* connection, const QByteArray& name) {
    const auto cookie =
        xcb_intern_atom(connection, 0, static_cast<std::uint16_t>(name.size()), name.constData());
    const Reply<xcb_intern_atom_reply_t> reply(xcb_intern_atom_reply(connection, cookie, nullptr));
    return reply ? reply->atom : xcb_atom_t{XCB_ATOM_NONE};
}

QString titleOf(xcb_connection_t* connection, xcb_window_t window, xcb_atom_t nameAtom) {
    constexpr std::uint32_t longestTitle = 4096;
    const auto cookie = xcb_get_property(connection, 0, window, nameAtom, XCB_GET_PROPERTY_TYPE_ANY,
                                         0, longestTitle / 4);
    const Reply<xcb_get_property_reply_t> reply(
        xcb_get_property_reply(connection, cookie, nullptr));
    if (!reply) {
        return {};
    }
    return QString::fromUtf8(static_cast<const char*>(xcb_get_property_value(reply.get())),
                             xcb_get_property_value_length(reply.get()));
}

bool isViewable(xcb_connection_t* connection, xcb_window_t window) {
    const Reply<xcb_get_window_attributes_reply_t> reply(xcb_get_window_attributes_reply(
        connection, xcb_get_window_attributes(connection, window), nullptr));
    return reply && reply->map_state == XCB_MAP_STATE_VIEWABLE;
}

std::vector<xcb_window_t> childrenOf(xcb_connection_t* connection, xcb_window_t window) {
    const Reply<xcb_query_tree_reply_t> reply(
        xcb_query_tree_reply(connection, xcb_query_tree(connection, window), nullptr));
    if (!reply) {
        return {};
    }
    const xcb_window_t* first = xcb_query_tree_children(reply.get());
    return {first, first + xcb_query_tree_children_length(reply.get())};
}

} // namespace

bool canSeeWindows() {
    return connectToDisplay() != nullptr;
}

bool isWindowShown(const QString& title) {
    const Connection connection = connectToDisplay();
    if (!connection) {
        return false;
    }
    const xcb_atom_t nameAtom = atom(connection.get(), "_NET_WM_NAME");
    // Window managers put a window into a frame of theirs: two levels hold all titled windows.
    const xcb_window_t root = xcb_setup_roots_iterator(xcb_get_setup(connection.get())).data->root;
    std::vector<xcb_window_t> level{root};
    for (int depth = 0; depth < 3; ++depth) {
        std::vector<xcb_window_t> next;
        for (const xcb_window_t parent : level) {
            for (const xcb_window_t window : childrenOf(connection.get(), parent)) {
                if (titleOf(connection.get(), window, nameAtom) == title &&
                    isViewable(connection.get(), window)) {
                    return true;
                }
                next.push_back(window);
            }
        }
        level = std::move(next);
    }
    return false;
}

} // namespace kintar::demo
