#include "platform/linux/SingleInstance.h"
#include "support/TestMain.h"

#include <QLocalSocket>
#include <QSignalSpy>
#include <QStandardPaths>
#include <QTest>

class SingleInstanceTest : public QObject {
    Q_OBJECT

    static QString socketPath() {
        return QStandardPaths::writableLocation(QStandardPaths::RuntimeLocation) + QStringLiteral("/norvanebar.socket");
    }

    // Writes raw bytes to the running instance, as any process of the user could.
    static void sendRaw(const QByteArray& bytes) {
        QLocalSocket socket;
        socket.connectToServer(socketPath());
        QVERIFY(socket.waitForConnected(1000));
        socket.write(bytes);
        QVERIFY(socket.waitForBytesWritten(1000));
        socket.disconnectFromServer();
    }

private slots:
    void aLaterLaunchFindsNoInstanceWhenNoneRuns() {
        QLocalServer::removeServer(socketPath());
        QVERIFY(!SingleInstance::handOver(InstanceMessage::togglePopover()));
    }

    void theRunningInstanceReceivesTheToggle() {
        SingleInstance instance;
        QVERIFY(instance.listen());
        QSignalSpy received(&instance, &SingleInstance::messageReceived);
        QVERIFY(SingleInstance::handOver(InstanceMessage::togglePopover()));
        QVERIFY(received.wait(2000));
        QCOMPARE(received.takeFirst().at(0).value<InstanceMessage>(), InstanceMessage::togglePopover());
    }

    void theRunningInstanceReceivesASignInCallback() {
        SingleInstance instance;
        QVERIFY(instance.listen());
        QSignalSpy received(&instance, &SingleInstance::messageReceived);
        const QUrl callback(QStringLiteral("com.norvanebar.app:/oauth/google?state=s&code=c"));
        QVERIFY(SingleInstance::handOver(InstanceMessage::callback(callback)));
        QVERIFY(received.wait(2000));
        QCOMPARE(received.takeFirst().at(0).value<InstanceMessage>().callbackURL, std::optional(callback));
    }

    void aSocketLeftByACrashIsReplaced() {
        {
            QLocalServer crashed;
            QVERIFY(crashed.listen(socketPath()));
            // Destroying a listening server removes its socket; a crash would not.
        }
        QFile stale(socketPath());
        QVERIFY(stale.open(QIODevice::WriteOnly));
        stale.close();
        SingleInstance instance;
        QVERIFY(instance.listen());
        QSignalSpy received(&instance, &SingleInstance::messageReceived);
        QVERIFY(SingleInstance::handOver(InstanceMessage::togglePopover()));
        QVERIFY(received.wait(2000));
    }

    void unknownWordsAreIgnored() {
        SingleInstance instance;
        QVERIFY(instance.listen());
        QSignalSpy received(&instance, &SingleInstance::messageReceived);
        sendRaw("rm -rf\n");
        sendRaw(QByteArray(64 * 1024, 'x'));
        QVERIFY(!received.wait(300));
        // Still serving afterwards.
        QVERIFY(SingleInstance::handOver(InstanceMessage::togglePopover()));
        QVERIFY(received.wait(2000));
    }
};

NORVANEBAR_TEST_GUILESS_MAIN(SingleInstanceTest)
#include "SingleInstanceTest.moc"
