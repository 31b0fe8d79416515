#include "platform/linux/PortalRequest.h"

#include <QDBusMessage>
#include <QDBusObjectPath>
#include <QDBusServiceWatcher>
#include <QUuid>
#include <qcoro/qcorodbus.h>
#include <qcoro/qcorosignal.h>

namespace {
const QString requestInterface = QStringLiteral("org.freedesktop.portal.Request");
// The call only hands out the request; the user's choice comes later, as long as it takes.
constexpr int callTimeoutMs = 5000;
} // namespace

PortalRequest::PortalRequest(QDBusConnection bus)
    : m_bus(std::move(bus)) {}

PortalRequest::~PortalRequest() {
    listen(QString());
}

QString PortalRequest::newToken() {
    return QStringLiteral("norvanebar_") + QUuid::createUuid().toString(QUuid::Id128);
}

QCoro::Task<std::optional<PortalRequest::Response>> PortalRequest::call(QDBusConnection bus, QString interface,
                                                                        QString method, QVariantList arguments,
                                                                        QVariantMap options) {
    if (!bus.isConnected()) {
        co_return std::nullopt;
    }
    PortalRequest request(bus);
    const QString token = newToken();
    options.insert(QStringLiteral("handle_token"), token);
    // Listening before the call means an answer that comes at once is not missed.
    request.listen(request.requestPath(token));
    QDBusServiceWatcher watcher(service, bus, QDBusServiceWatcher::WatchForUnregistration);
    connect(&watcher, &QDBusServiceWatcher::serviceUnregistered, &request, [&request] { request.end({}); });

    QDBusMessage message = QDBusMessage::createMethodCall(service, path, interface, method);
    message.setArguments(arguments << options);
    const QDBusMessage reply = co_await bus.asyncCall(message, callTimeoutMs);
    if (reply.type() != QDBusMessage::ReplyMessage || reply.arguments().isEmpty()) {
        co_return std::nullopt;
    }
    // Portals before 0.9 chose the request's path themselves.
    request.listen(reply.arguments().constFirst().value<QDBusObjectPath>().path());
    if (!request.m_response) {
        co_await qCoro(&request, &PortalRequest::answered);
    }
    co_return request.m_response;
}

void PortalRequest::response(uint code, const QVariantMap& results) {
    end(Response{code, results});
}

QString PortalRequest::requestPath(const QString& token) const {
    QString sender = m_bus.baseService().mid(1);
    sender.replace(QLatin1Char('.'), QLatin1Char('_'));
    return path + QStringLiteral("/request/") + sender + QLatin1Char('/') + token;
}

void PortalRequest::listen(const QString& requestPath) {
    if (requestPath == m_listening) {
        return;
    }
    const char* const signature = SLOT(response(uint, QVariantMap));
    if (!m_listening.isEmpty()) {
        m_bus.disconnect(service, m_listening, requestInterface, QStringLiteral("Response"), this, signature);
    }
    m_listening = requestPath;
    if (!requestPath.isEmpty()) {
        m_bus.connect(service, requestPath, requestInterface, QStringLiteral("Response"), this, signature);
    }
}

void PortalRequest::end(Response response) {
    if (m_response) {
        return;
    }
    m_response = std::move(response);
    emit answered();
}
