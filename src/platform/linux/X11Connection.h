#pragma once

#include <QByteArray>
#include <QGuiApplication>
#include <cstdlib>
#include <memory>
#include <xcb/xcb.h>

// The X connection of the application's windows; none off X11.
inline xcb_connection_t* x11Connection() {
    const auto* x11 = qGuiApp ? qGuiApp->nativeInterface<QNativeInterface::QX11Application>() : nullptr;
    return x11 ? x11->connection() : nullptr;
}

// A reply (or error) xcb hands out, freed with it.
template <typename Reply> using ReplyPointer = std::unique_ptr<Reply, decltype(&std::free)>;

// The root window of the connection's first screen.
inline xcb_window_t rootWindow(xcb_connection_t* connection) {
    return xcb_setup_roots_iterator(xcb_get_setup(connection)).data->root;
}

// The atom of that name, made when the server has none yet; XCB_ATOM_NONE when the server doesn't
// answer.
inline xcb_atom_t internAtom(xcb_connection_t* connection, const QByteArray& name) {
    const auto cookie = xcb_intern_atom(connection, 0, static_cast<uint16_t>(name.size()), name.constData());
    const ReplyPointer<xcb_intern_atom_reply_t> reply(xcb_intern_atom_reply(connection, cookie, nullptr), &std::free);
    return reply ? reply->atom : XCB_ATOM_NONE;
}
