#pragma once

#include <QList>
#include <QRect>
#include <QString>
#include <xcb/xcb.h>

// A window a person can pick to record on X11: the application windows on the screen with their
// titles, topmost first.
struct X11TopLevelWindow {
    quint32 window = 0;
    QString title;
    // In the root window's pixels.
    QRect geometry;

    bool operator==(const X11TopLevelWindow&) const = default;
};

namespace X11TopLevelWindows {

// The windows of the window manager's client list where it keeps one (_NET_CLIENT_LIST_STACKING),
// else the mapped children of the root window that are not override-redirect; windows without a
// title or without area are left out.
QList<X11TopLevelWindow> list(xcb_connection_t* connection);

} // namespace X11TopLevelWindows
