#pragma once

#include <QDBusConnection>
#include <QDBusConnectionInterface>
#include <QDBusMessage>
#include <QProcess>
#include <QTest>

// A D-Bus service of the harness (a Python script) on the test's session bus: started, ready once
// it owns its name, and stopped by the test. Its test interface is called synchronously.
class DBusServiceProcess {
public:
    DBusServiceProcess(QString script, QString busName)
        : m_script(std::move(script))
        , m_busName(std::move(busName)) {}
    ~DBusServiceProcess() { stop(); }

    bool start(const QStringList& arguments = {}) {
        m_process.start(QStringLiteral("/usr/bin/python3"), QStringList{m_script} + arguments);
        return QTest::qWaitFor([this] { return owned(); }, 5000);
    }

    bool stop() {
        if (m_process.state() != QProcess::NotRunning) {
            m_process.terminate();
            if (!m_process.waitForFinished(3000)) {
                m_process.kill();
                m_process.waitForFinished();
            }
        }
        return QTest::qWaitFor([this] { return !owned(); }, 5000);
    }

    // The answer of a method of the service, or an empty list when it failed.
    QVariantList call(const QString& path, const QString& interface, const QString& method,
                      const QVariantList& arguments = {}) const {
        QDBusMessage request = QDBusMessage::createMethodCall(m_busName, path, interface, method);
        request.setArguments(arguments);
        const QDBusMessage reply = QDBusConnection::sessionBus().call(request);
        return reply.type() == QDBusMessage::ReplyMessage ? reply.arguments() : QVariantList();
    }

private:
    bool owned() const { return QDBusConnection::sessionBus().interface()->isServiceRegistered(m_busName).value(); }

    QString m_script;
    QString m_busName;
    QProcess m_process;
};
