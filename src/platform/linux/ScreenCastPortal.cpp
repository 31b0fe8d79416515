#include "platform/linux/ScreenCastPortal.h"

#include "core/async/LoadGuard.h"
#include "core/async/StartTask.h"
#include "platform/linux/PortalRequest.h"

#include <QDBusArgument>
#include <QDBusMessage>
#include <QDBusObjectPath>
#include <QDBusUnixFileDescriptor>
#include <QDBusVariant>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QSaveFile>
#include <fcntl.h>
#include <qcoro/qcorodbus.h>
#include <unistd.h>

namespace {
const QString interface = QStringLiteral("org.freedesktop.portal.ScreenCast");
constexpr int callTimeoutMs = 5000;
// Source types, cursor modes and persist modes of the portal's documentation.
constexpr uint monitor = 1;
constexpr uint window = 2;
constexpr uint hiddenCursor = 1;
constexpr uint embeddedCursor = 2;
constexpr uint metadataCursor = 4;
constexpr uint persistUntilRevoked = 2;

struct Stream {
    quint32 node = 0;
    QSize size;
};

QSize sizeOf(const QVariant& value) {
    int width = 0;
    int height = 0;
    if (value.canConvert<QDBusArgument>()) {
        const auto argument = value.value<QDBusArgument>();
        argument.beginStructure();
        argument >> width >> height;
        argument.endStructure();
    }
    return {width, height};
}

// The first of the streams a successful Start hands out.
std::optional<Stream> firstStream(const QVariant& streams) {
    if (!streams.canConvert<QDBusArgument>()) {
        return std::nullopt;
    }
    const auto argument = streams.value<QDBusArgument>();
    if (argument.currentType() != QDBusArgument::ArrayType) {
        return std::nullopt;
    }
    std::optional<Stream> first;
    argument.beginArray();
    while (!argument.atEnd()) {
        Stream stream;
        QVariantMap properties;
        argument.beginStructure();
        argument >> stream.node >> properties;
        argument.endStructure();
        stream.size = sizeOf(properties.value(QStringLiteral("size")));
        if (!first) {
            first = stream;
        }
    }
    argument.endArray();
    return first;
}
} // namespace

ScreenCastPortal::ScreenCastPortal(QString restoreTokenPath, QDBusConnection bus, QObject* parent)
    : QObject(parent)
    , m_restoreTokenPath(std::move(restoreTokenPath))
    , m_bus(std::move(bus)) {}

ScreenCastPortal::~ScreenCastPortal() {
    closeSession();
}

void ScreenCastPortal::addObserver(ScreenContentPickerObserver* observer) {
    if (!m_observers.contains(observer)) {
        m_observers.append(observer);
    }
}

void ScreenCastPortal::removeObserver(ScreenContentPickerObserver* observer) {
    m_observers.removeAll(observer);
}

void ScreenCastPortal::setActive(bool active) {
    m_active = active;
    if (!active) {
        closeSession();
    }
}

void ScreenCastPortal::present(bool showsCursor) {
    if (!m_choosing) {
        startTask(this, choose(showsCursor));
    }
}

bool ScreenCastPortal::remembersChoice() const {
    return QFileInfo(m_restoreTokenPath).size() > 0;
}

void ScreenCastPortal::forgetChoice() {
    QFile::remove(m_restoreTokenPath);
}

QCoro::Task<> ScreenCastPortal::choose(bool showsCursor) {
    const LoadGuard guard(this);
    m_choosing = true;
    // A new choice ends the session of the one before.
    closeSession();
    QCoro::Task<std::optional<QVariantMap>> creating =
        ask(QStringLiteral("CreateSession"), {}, {{QStringLiteral("session_handle_token"), PortalRequest::newToken()}});
    const std::optional<QVariantMap> created = co_await std::move(creating);
    if (!created) {
        co_return;
    }
    m_session = created->value(QStringLiteral("session_handle")).toString();

    QCoro::Task<std::optional<uint>> askingTypes = available(QStringLiteral("AvailableSourceTypes"));
    const std::optional<uint> types = co_await std::move(askingTypes);
    QCoro::Task<std::optional<uint>> askingModes = available(QStringLiteral("AvailableCursorModes"));
    const std::optional<uint> cursorModes = co_await std::move(askingModes);
    if (!guard.holds()) {
        co_return;
    }
    QCoro::Task<std::optional<QVariantMap>> selecting = ask(
        QStringLiteral("SelectSources"), {QDBusObjectPath(m_session)}, sourceOptions(showsCursor, types, cursorModes));
    if (!co_await std::move(selecting)) {
        co_return;
    }
    QCoro::Task<std::optional<QVariantMap>> starting =
        ask(QStringLiteral("Start"), {QDBusObjectPath(m_session), QString()}, {});
    const std::optional<QVariantMap> started = co_await std::move(starting);
    if (!started) {
        co_return;
    }
    const std::optional<Stream> stream = firstStream(started->value(QStringLiteral("streams")));
    if (const QString token = started->value(QStringLiteral("restore_token")).toString(); !token.isEmpty()) {
        QDir().mkpath(QFileInfo(m_restoreTokenPath).path());
        QSaveFile file(m_restoreTokenPath);
        if (file.open(QIODevice::WriteOnly)) {
            file.write(token.toUtf8());
            file.commit();
        }
    }
    QCoro::Task<int> opening = openPipeWireRemote();
    const int remote = co_await std::move(opening);
    if (!guard.holds()) {
        if (remote >= 0) {
            close(remote);
        }
        co_return;
    }
    m_choosing = false;
    m_remote = remote;
    if (!stream || remote < 0) {
        tellFailure(tr("The desktop shared no screen."));
        co_return;
    }
    CaptureTarget target;
    // A screen or window of unknown size is recorded at 1080p.
    target.contentRect = QRectF(QPointF(0, 0), stream->size.isEmpty() ? QSizeF(1920, 1080) : QSizeF(stream->size));
    target.surface = CaptureTarget::PipeWireNode{m_remote, stream->node};
    for (ScreenContentPickerObserver* observer : QList(m_observers)) {
        observer->contentPickerDidSelect(target);
    }
}

QCoro::Task<std::optional<QVariantMap>> ScreenCastPortal::ask(QString method, QVariantList arguments,
                                                              QVariantMap options) {
    const LoadGuard guard(this);
    QCoro::Task<std::optional<PortalRequest::Response>> asking =
        PortalRequest::call(m_bus, interface, std::move(method), std::move(arguments), std::move(options));
    const std::optional<PortalRequest::Response> response = co_await std::move(asking);
    if (!guard.holds()) {
        co_return std::nullopt;
    }
    if (!response || response->code != PortalRequest::success) {
        m_choosing = false;
        tellEnd(response ? std::optional(response->code) : std::nullopt);
        co_return std::nullopt;
    }
    co_return response->results;
}

QCoro::Task<std::optional<uint>> ScreenCastPortal::available(QString property) {
    QDBusMessage get =
        QDBusMessage::createMethodCall(PortalRequest::service, PortalRequest::path,
                                       QStringLiteral("org.freedesktop.DBus.Properties"), QStringLiteral("Get"));
    get << interface << property;
    const QDBusMessage reply = co_await m_bus.asyncCall(get, callTimeoutMs);
    if (reply.type() != QDBusMessage::ReplyMessage || reply.arguments().isEmpty()) {
        co_return std::nullopt;
    }
    bool isNumber = false;
    const uint value = reply.arguments().constFirst().value<QDBusVariant>().variant().toUInt(&isNumber);
    co_return isNumber ? std::optional(value) : std::nullopt;
}

QVariantMap ScreenCastPortal::sourceOptions(bool showsCursor, std::optional<uint> types,
                                            std::optional<uint> cursorModes) const {
    QVariantMap options{
        {QStringLiteral("types"), types ? (*types & (monitor | window)) : monitor},
        {QStringLiteral("multiple"), false},
        {QStringLiteral("persist_mode"), persistUntilRevoked},
    };
    if (cursorModes) {
        // The pointer drawn into the frames where the portal can, else sent beside them.
        uint mode = hiddenCursor;
        if (showsCursor) {
            mode = (*cursorModes & embeddedCursor) != 0 ? embeddedCursor : metadataCursor;
        }
        if ((*cursorModes & mode) != 0) {
            options.insert(QStringLiteral("cursor_mode"), mode);
        }
    }
    QFile file(m_restoreTokenPath);
    if (file.open(QIODevice::ReadOnly)) {
        if (const QString token = QString::fromUtf8(file.readAll()).trimmed(); !token.isEmpty()) {
            options.insert(QStringLiteral("restore_token"), token);
        }
    }
    return options;
}

QCoro::Task<int> ScreenCastPortal::openPipeWireRemote() {
    QDBusMessage open = QDBusMessage::createMethodCall(PortalRequest::service, PortalRequest::path, interface,
                                                       QStringLiteral("OpenPipeWireRemote"));
    open << QVariant::fromValue(QDBusObjectPath(m_session)) << QVariantMap();
    const QDBusMessage reply = co_await m_bus.asyncCall(open, callTimeoutMs);
    if (reply.type() != QDBusMessage::ReplyMessage || reply.arguments().isEmpty()) {
        co_return -1;
    }
    const auto descriptor = reply.arguments().constFirst().value<QDBusUnixFileDescriptor>();
    // The message's descriptor closes with it.
    co_return descriptor.isValid() ? fcntl(descriptor.fileDescriptor(), F_DUPFD_CLOEXEC, 3) : -1;
}

void ScreenCastPortal::closeSession() {
    if (m_remote >= 0) {
        close(m_remote);
        m_remote = -1;
    }
    if (!m_session.isEmpty()) {
        m_bus.asyncCall(QDBusMessage::createMethodCall(PortalRequest::service, m_session,
                                                       QStringLiteral("org.freedesktop.portal.Session"),
                                                       QStringLiteral("Close")));
        m_session.clear();
    }
}

void ScreenCastPortal::tellEnd(const std::optional<uint>& code) {
    closeSession();
    if (code == PortalRequest::cancelled) {
        for (ScreenContentPickerObserver* observer : QList(m_observers)) {
            observer->contentPickerDidCancel();
        }
    } else if (code) {
        tellFailure(tr("The desktop ended the screen sharing."));
    } else {
        tellFailure(tr("The desktop's screen sharing portal did not answer."));
    }
}

void ScreenCastPortal::tellFailure(const QString& description) {
    closeSession();
    for (ScreenContentPickerObserver* observer : QList(m_observers)) {
        observer->contentPickerStartDidFail(description);
    }
}
