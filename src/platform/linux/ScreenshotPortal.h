#pragma once

#include <QDBusConnection>
#include <QObject>
#include <QUrl>
#include <QVariantMap>
#include <optional>
#include <qcoro/qcorotask.h>

// The Screenshot portal of xdg-desktop-portal, asked for an interactive screenshot: the desktop lets
// the user choose what to take, or cancel, and answers with the picture's address through the
// request's Response signal. One request at a time.
class ScreenshotPortal : public QObject {
    Q_OBJECT

public:
    explicit ScreenshotPortal(QDBusConnection bus = QDBusConnection::sessionBus(), QObject* parent = nullptr);

    // Asks for a screenshot and copies the picture the portal answers with to `outputPath`. Whether
    // a portal took the request: false when none is on the bus or it refused the call, and then
    // nothing was written. A request the user cancelled, or a portal that went away before its
    // answer, was taken and writes nothing.
    QCoro::Task<bool> capture(QString outputPath);

signals:
    // The request ended: answered, or the portal left the bus.
    void ended();

private slots:
    void response(uint code, const QVariantMap& results);

private:
    // The request's object path, the one the portal is expected to use for this handle token.
    QString requestPath(const QString& token) const;
    // Follows the Response of the request at `path` only; an empty path follows none.
    void listen(const QString& path);
    void end(std::optional<QUrl> picture);

    QDBusConnection m_bus;
    QString m_listening;
    bool m_ended = false;
    std::optional<QUrl> m_picture;
};
