#pragma once

#include <QDBusConnection>
#include <QString>
#include <qcoro/qcorotask.h>

// The Screenshot portal of xdg-desktop-portal, asked for an interactive screenshot: the desktop lets
// the user choose what to take, or cancel, and answers with the picture's address.
class ScreenshotPortal {
public:
    explicit ScreenshotPortal(QDBusConnection bus = QDBusConnection::sessionBus());

    // Asks for a screenshot and copies the picture the portal answers with to `outputPath`. Whether
    // a portal took the request: false when none is on the bus or it refused the call, and then
    // nothing was written. A request the user cancelled, or a portal that went away before its
    // answer, was taken and writes nothing.
    QCoro::Task<bool> capture(QString outputPath);

private:
    QDBusConnection m_bus;
};
