#include "platform/linux/ScreenshotPortal.h"

#include <QDBusMessage>
#include <QDBusObjectPath>
#include <QDBusServiceWatcher>
#include <QFile>
#include <QUuid>
#include <qcoro/qcorodbus.h>
#include <qcoro/qcorosignal.h>

namespace {
const QString service = QStringLiteral("org.freedesktop.portal.Desktop");
const QString path = QStringLiteral("/org/freedesktop/portal/desktop");
const QString interface = QStringLiteral("org.freedesktop.portal.Screenshot");
const QString requestInterface = QStringLiteral("org.freedesktop.portal.Request");
// The call only hands out the request; the user's choice comes later, as long as it takes.
constexpr int callTimeoutMs = 5000;
// Response's code for a screenshot taken; 1 is cancelled by the user, 2 another end.
constexpr uint taken = 0;
} // namespace

ScreenshotPortal::ScreenshotPortal(QDBusConnection bus, QObject* parent)
    : QObject(parent)
    , m_bus(std::move(bus)) {}

QCoro::Task<bool> ScreenshotPortal::capture(QString outputPath) {
    if (!m_bus.isConnected()) {
        co_return false;
    }
    m_ended = false;
    m_picture.reset();
    const QString token = QStringLiteral("norvanebar_") + QUuid::createUuid().toString(QUuid::Id128);
    // Listening before the call means an answer that comes at once is not missed.
    listen(requestPath(token));
    QDBusServiceWatcher watcher(service, m_bus, QDBusServiceWatcher::WatchForUnregistration);
    connect(&watcher, &QDBusServiceWatcher::serviceUnregistered, this, [this] { end(std::nullopt); });

    QDBusMessage call = QDBusMessage::createMethodCall(service, path, interface, QStringLiteral("Screenshot"));
    call << QString() // no parent window
         << QVariantMap{{QStringLiteral("handle_token"), token},
                        {QStringLiteral("modal"), true},
                        {QStringLiteral("interactive"), true}};
    const QDBusMessage reply = co_await m_bus.asyncCall(call, callTimeoutMs);
    if (reply.type() != QDBusMessage::ReplyMessage || reply.arguments().isEmpty()) {
        listen(QString());
        co_return false;
    }
    // Portals before 0.9 chose the request's path themselves.
    listen(reply.arguments().constFirst().value<QDBusObjectPath>().path());
    if (!m_ended) {
        co_await qCoro(this, &ScreenshotPortal::ended);
    }
    listen(QString());
    if (m_picture && m_picture->isLocalFile()) {
        QFile::copy(m_picture->toLocalFile(), outputPath);
    }
    co_return true;
}

void ScreenshotPortal::response(uint code, const QVariantMap& results) {
    const QUrl picture(results.value(QStringLiteral("uri")).toString());
    end(code == taken && picture.isValid() ? std::optional(picture) : std::nullopt);
}

QString ScreenshotPortal::requestPath(const QString& token) const {
    QString sender = m_bus.baseService().mid(1);
    sender.replace(QLatin1Char('.'), QLatin1Char('_'));
    return path + QStringLiteral("/request/") + sender + QLatin1Char('/') + token;
}

void ScreenshotPortal::listen(const QString& requestPath) {
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

void ScreenshotPortal::end(std::optional<QUrl> picture) {
    if (m_ended) {
        return;
    }
    m_ended = true;
    m_picture = std::move(picture);
    emit ended();
}
