#pragma once

#include <QDBusConnection>
#include <QObject>
#include <QVariantList>
#include <QVariantMap>
#include <optional>
#include <qcoro/qcorotask.h>

// One call of an xdg-desktop-portal method that answers later, through the Response signal of a
// request object, as org.freedesktop.portal.Request documents.
class PortalRequest : public QObject {
    Q_OBJECT

public:
    static inline const QString service = QStringLiteral("org.freedesktop.portal.Desktop");
    static inline const QString path = QStringLiteral("/org/freedesktop/portal/desktop");

    // Response's codes: the user chose, the user cancelled, another end.
    static constexpr uint success = 0;
    static constexpr uint cancelled = 1;
    static constexpr uint ended = 2;

    struct Response {
        uint code = ended;
        QVariantMap results;
    };

    // Calls `method` of `interface` with `arguments`, then `options` with a handle token added, and
    // waits as long as the user takes for the answer. None when no portal took the call; a portal
    // that left the bus before answering ended the request.
    static QCoro::Task<std::optional<Response>> call(QDBusConnection bus, QString interface, QString method,
                                                     QVariantList arguments, QVariantMap options);
    // A token for a handle a portal makes for this program.
    static QString newToken();

signals:
    void answered();

private slots:
    void response(uint code, const QVariantMap& results);

private:
    explicit PortalRequest(QDBusConnection bus);
    ~PortalRequest() override;

    // The request's object path, the one the portal is expected to use for this handle token.
    QString requestPath(const QString& token) const;
    // Follows the Response of the request at `path` only; an empty path follows none.
    void listen(const QString& requestPath);
    void end(Response response);

    QDBusConnection m_bus;
    QString m_listening;
    std::optional<Response> m_response;
};
