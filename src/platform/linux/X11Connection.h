#pragma once

#include <QGuiApplication>
#include <xcb/xcb.h>

// The X connection of the application's windows; none off X11.
inline xcb_connection_t* x11Connection() {
    const auto* x11 = qGuiApp ? qGuiApp->nativeInterface<QNativeInterface::QX11Application>() : nullptr;
    return x11 ? x11->connection() : nullptr;
}
