#include "platform/linux/SecretServicePrompt.h"

#include <QDBusServiceWatcher>
#include <QDeadlineTimer>
#include <qcoro/qcorodbus.h>
#include <qcoro/qcorosignal.h>

namespace {
const QString promptInterface = QStringLiteral("org.freedesktop.Secret.Prompt");
const QString completedSignal = QStringLiteral("Completed");
const char* const completedSlot = SLOT(completed(QDBusMessage));
} // namespace

SecretServicePrompt::SecretServicePrompt(QDBusConnection bus, QString service, QString path)
    : m_bus(std::move(bus))
    , m_service(std::move(service))
    , m_path(std::move(path)) {
    m_bus.connect(m_service, m_path, promptInterface, completedSignal, this, completedSlot);
}

SecretServicePrompt::~SecretServicePrompt() {
    m_bus.disconnect(m_service, m_path, promptInterface, completedSignal, this, completedSlot);
}

QCoro::Task<SecretServicePrompt::Ending> SecretServicePrompt::run(QDBusConnection bus, QString service, QString path,
                                                                  std::chrono::milliseconds limit) {
    // Listening before showing it means an end that comes at once is not missed.
    SecretServicePrompt prompt(bus, service, path);
    QDBusServiceWatcher watcher(service, bus, QDBusServiceWatcher::WatchForUnregistration);
    connect(&watcher, &QDBusServiceWatcher::serviceUnregistered, &prompt, [&prompt] { prompt.end({}); });

    QDBusMessage message = QDBusMessage::createMethodCall(service, path, promptInterface, QStringLiteral("Prompt"));
    message << QString(); // no window of ours to put the prompt above
    const QDeadlineTimer deadline(limit);
    const QDBusMessage reply = co_await bus.asyncCall(message, static_cast<int>(limit.count()));
    if (reply.type() != QDBusMessage::ReplyMessage) {
        co_return Ending{};
    }
    if (!prompt.m_ending) {
        const auto ended = co_await qCoro(&prompt, &SecretServicePrompt::ended,
                                          std::chrono::milliseconds(std::max<qint64>(deadline.remainingTime(), 0)));
        if (!ended) {
            co_return Ending{Outcome::timedOut, {}};
        }
    }
    co_return *prompt.m_ending;
}

void SecretServicePrompt::completed(const QDBusMessage& message) {
    // Completed(dismissed b, result v); anything else ends the prompt as failed.
    const QVariantList arguments = message.arguments();
    if (message.signature() != QLatin1String("bv")) {
        end({});
        return;
    }
    if (arguments.at(0).toBool()) {
        end({Outcome::dismissed, {}});
        return;
    }
    end({Outcome::completed, arguments.at(1).value<QDBusVariant>().variant()});
}

void SecretServicePrompt::end(Ending ending) {
    if (m_ending) {
        return;
    }
    m_ending = std::move(ending);
    emit ended();
}
