#pragma once

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusVariant>
#include <QObject>
#include <chrono>
#include <qcoro/qcorotask.h>

// A prompt object of the Secret Service (org.freedesktop.Secret.Prompt), handed out when unlocking
// or creating needs the person: Prompt("") shows it, and its Completed signal says how it ended.
class SecretServicePrompt : public QObject {
    Q_OBJECT

public:
    enum class Outcome { completed, dismissed, failed, timedOut };
    struct Ending {
        Outcome outcome = Outcome::failed;
        // What the prompted operation gives on completion (an object path, a list of them).
        QVariant result;
    };

    // Shows the prompt at `path` of the service `service` and waits at most `limit` for its end. A
    // prompt that can't be shown, or a service that leaves the bus meanwhile, fails.
    static QCoro::Task<Ending> run(QDBusConnection bus, QString service, QString path, std::chrono::milliseconds limit);

signals:
    void ended();

private slots:
    void completed(const QDBusMessage& message);

private:
    SecretServicePrompt(QDBusConnection bus, QString service, QString path);
    ~SecretServicePrompt() override;

    void end(Ending ending);

    QDBusConnection m_bus;
    QString m_service;
    QString m_path;
    std::optional<Ending> m_ending;
};
