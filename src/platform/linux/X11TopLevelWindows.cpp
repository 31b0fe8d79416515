#include "platform/linux/X11TopLevelWindows.h"

#include "platform/linux/X11Connection.h"

#include <algorithm>

namespace {
template <typename T> ReplyPointer<T> owned(T* reply) {
    return ReplyPointer<T>(reply, &std::free);
}

// The value of a property of `window`, whatever its type; empty when it has none.
QByteArray property(xcb_connection_t* connection, xcb_window_t window, xcb_atom_t name) {
    if (name == XCB_ATOM_NONE) {
        return {};
    }
    constexpr uint32_t mostWords = 1 << 16;
    const auto reply = owned(xcb_get_property_reply(
        connection, xcb_get_property(connection, 0, window, name, XCB_GET_PROPERTY_TYPE_ANY, 0, mostWords), nullptr));
    if (!reply) {
        return {};
    }
    return {static_cast<const char*>(xcb_get_property_value(reply.get())), xcb_get_property_value_length(reply.get())};
}

QList<xcb_window_t> windowsOf(const QByteArray& value) {
    QList<xcb_window_t> windows;
    const auto* ids = reinterpret_cast<const xcb_window_t*>(value.constData());
    windows.reserve(value.size() / qsizetype(sizeof(xcb_window_t)));
    for (qsizetype i = 0; i < value.size() / qsizetype(sizeof(xcb_window_t)); ++i) {
        windows.append(ids[i]);
    }
    return windows;
}

// The mapped children of the root, bottom first, that a window manager would manage.
QList<xcb_window_t> mappedChildren(xcb_connection_t* connection, xcb_window_t root) {
    QList<xcb_window_t> children;
    const auto tree = owned(xcb_query_tree_reply(connection, xcb_query_tree(connection, root), nullptr));
    if (!tree) {
        return children;
    }
    const xcb_window_t* ids = xcb_query_tree_children(tree.get());
    for (int i = 0; i < xcb_query_tree_children_length(tree.get()); ++i) {
        const auto attributes =
            owned(xcb_get_window_attributes_reply(connection, xcb_get_window_attributes(connection, ids[i]), nullptr));
        if (attributes && attributes->map_state == XCB_MAP_STATE_VIEWABLE && !attributes->override_redirect) {
            children.append(ids[i]);
        }
    }
    return children;
}

QRect geometryOf(xcb_connection_t* connection, xcb_window_t window, xcb_window_t root) {
    const auto geometry = owned(xcb_get_geometry_reply(connection, xcb_get_geometry(connection, window), nullptr));
    const auto origin = owned(xcb_translate_coordinates_reply(
        connection, xcb_translate_coordinates(connection, window, root, 0, 0), nullptr));
    if (!geometry || !origin) {
        return {};
    }
    return {origin->dst_x, origin->dst_y, geometry->width, geometry->height};
}
} // namespace

namespace X11TopLevelWindows {

QList<X11TopLevelWindow> list(xcb_connection_t* connection) {
    QList<X11TopLevelWindow> found;
    if (!connection || xcb_connection_has_error(connection) != 0) {
        return found;
    }
    const xcb_window_t root = rootWindow(connection);
    const xcb_atom_t utf8Name = internAtom(connection, QByteArrayLiteral("_NET_WM_NAME"));
    QList<xcb_window_t> windows =
        windowsOf(property(connection, root, internAtom(connection, QByteArrayLiteral("_NET_CLIENT_LIST_STACKING"))));
    if (windows.isEmpty()) {
        windows = mappedChildren(connection, root);
    }
    // Both lists run from the bottom of the stack up.
    std::reverse(windows.begin(), windows.end());
    for (const xcb_window_t window : windows) {
        QString title = QString::fromUtf8(property(connection, window, utf8Name)).trimmed();
        if (title.isEmpty()) {
            title = QString::fromLatin1(property(connection, window, XCB_ATOM_WM_NAME)).trimmed();
        }
        const QRect geometry = geometryOf(connection, window, root);
        if (!title.isEmpty() && !geometry.isEmpty()) {
            found.append(X11TopLevelWindow{window, title, geometry});
        }
    }
    return found;
}

} // namespace X11TopLevelWindows
