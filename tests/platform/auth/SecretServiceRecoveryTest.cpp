// A keyring that gets locked, and a keyring daemon that restarts: the store fails quickly while the
// keyring is locked and no one can answer its password prompt, works again once it is unlocked, and
// opens a new session with a restarted daemon. Runs in a desktop session of its own, whose
// gnome-keyring-daemon it stops and replaces by one it starts itself; it signals no other process.
#include "platform/linux/SecretServiceStore.h"
#include "support/KeyringDaemon.h"
#include "support/TestMain.h"

#include "support/RunTask.h"

#include <QDBusArgument>
#include <QDBusConnection>
#include <QDBusConnectionInterface>
#include <QDBusMessage>
#include <QDBusObjectPath>
#include <QDBusVariant>
#include <QElapsedTimer>
#include <QProcess>
#include <QTest>
#include <csignal>

using namespace std::chrono_literals;

namespace {
const QString service = QStringLiteral("com.norvanebar.app");
const QString account = QStringLiteral("norvane-token-42");
const QString servicePath = QStringLiteral("/org/freedesktop/secrets");
const QString serviceInterface = QStringLiteral("org.freedesktop.Secret.Service");
// A locked keyring's failure is an answer in milliseconds, far within the prompt's own limit.
constexpr qint64 quickMSecs = 3000;

// A method of the keyring daemon, called from the test's own connection; an empty list when it failed.
QVariantList callKeyring(const QString& path, const QString& interface, const QString& method,
                         const QVariantList& arguments = {}) {
    QDBusMessage request = QDBusMessage::createMethodCall(KeyringDaemon::busName, path, interface, method);
    request.setArguments(arguments);
    const QDBusMessage reply = QDBusConnection::sessionBus().call(request, QDBus::Block, 5000);
    return reply.type() == QDBusMessage::ReplyMessage ? reply.arguments() : QVariantList();
}

QString defaultCollection() {
    const QVariantList alias =
        callKeyring(servicePath, serviceInterface, QStringLiteral("ReadAlias"), {QStringLiteral("default")});
    return alias.isEmpty() ? QString() : alias.constFirst().value<QDBusObjectPath>().path();
}

std::optional<bool> collectionLocked(const QString& collection) {
    const QVariantList locked =
        callKeyring(collection, QStringLiteral("org.freedesktop.DBus.Properties"), QStringLiteral("Get"),
                    {QStringLiteral("org.freedesktop.Secret.Collection"), QStringLiteral("Locked")});
    if (locked.isEmpty()) {
        return std::nullopt;
    }
    return locked.constFirst().value<QDBusVariant>().variant().toBool();
}

// Unlocks the collection without a prompt, with the session keyring's password, through the
// daemon's own interface for that (the one its unlock tools use).
bool unlockedWithPassword(const QString& collection) {
    const QVariantList session = callKeyring(servicePath, serviceInterface, QStringLiteral("OpenSession"),
                                             {QStringLiteral("plain"), QVariant::fromValue(QDBusVariant(QString()))});
    if (session.size() != 2) {
        return false;
    }
    QDBusArgument secret;
    secret.beginStructure();
    secret << session.at(1).value<QDBusObjectPath>() << QByteArray() << KeyringDaemon::password
           << QStringLiteral("text/plain");
    secret.endStructure();
    QDBusMessage request =
        QDBusMessage::createMethodCall(KeyringDaemon::busName, servicePath,
                                       QStringLiteral("org.gnome.keyring.InternalUnsupportedGuiltRiddenInterface"),
                                       QStringLiteral("UnlockWithMasterPassword"));
    request.setArguments({QVariant::fromValue(QDBusObjectPath(collection)), QVariant::fromValue(secret)});
    return QDBusConnection::sessionBus().call(request, QDBus::Block, 5000).type() == QDBusMessage::ReplyMessage;
}

bool keyringOnTheBus() {
    return QDBusConnection::sessionBus().interface()->isServiceRegistered(KeyringDaemon::busName).value();
}
} // namespace

class SecretServiceRecoveryTest : public QObject {
    Q_OBJECT

    SecretServiceStore m_secrets;
    QString m_collection;
    // The daemon this test started in place of the session's, stopped with the test.
    std::unique_ptr<QProcess> m_daemon;

    // Stops the keyring daemon that runs now and starts a new one on the same keyring files.
    void restartKeyring() {
        if (m_daemon) {
            m_daemon->terminate();
            QVERIFY(m_daemon->waitForFinished(5000));
        } else {
            const std::optional<pid_t> daemon = KeyringDaemon::ofOwnSession();
            QVERIFY2(daemon, "the keyring daemon of this test's own session is not found; nothing is signalled");
            QVERIFY(::kill(*daemon, SIGTERM) == 0);
        }
        QVERIFY(QTest::qWaitFor([] { return !keyringOnTheBus(); }, 5000));
        m_daemon = std::make_unique<QProcess>();
        m_daemon->start(
            QStringLiteral("gnome-keyring-daemon"),
            {QStringLiteral("--foreground"), QStringLiteral("--unlock"), QStringLiteral("--components=secrets")});
        m_daemon->write(KeyringDaemon::password);
        m_daemon->closeWriteChannel();
        QVERIFY(QTest::qWaitFor(keyringOnTheBus, 5000));
    }

private slots:
    void initTestCase() {
        QVERIFY2(KeyringDaemon::ofOwnSession(), "the test runs in a desktop session of its own");
        m_collection = defaultCollection();
        QVERIFY(!m_collection.isEmpty());
        QCOMPARE(runTask(m_secrets.write(service, account, "pk_before")), SecretServiceStore::successStatus);
    }

    void aLockedKeyringWhosePromptNoOneAnswersFailsQuicklyAndWorksOnceUnlocked() {
        QVERIFY(!callKeyring(servicePath, serviceInterface, QStringLiteral("Lock"),
                             {QVariant::fromValue(QList<QDBusObjectPath>{QDBusObjectPath(m_collection)})})
                     .isEmpty());
        QCOMPARE(collectionLocked(m_collection), true);

        QElapsedTimer elapsed;
        elapsed.start();
        QCOMPARE(runTask(m_secrets.read(service, account)), std::nullopt);
        const int status = runTask(m_secrets.write(service, account, "pk_locked"));
        QVERIFY2(status != SecretServiceStore::successStatus, qPrintable(QString::number(status)));
        QVERIFY2(status != SecretServiceStore::timedOutStatus, "the keyring answered; nothing timed out");
        QVERIFY2(elapsed.elapsed() < quickMSecs, qPrintable(QString::number(elapsed.elapsed())));
        QCOMPARE(collectionLocked(m_collection), true);

        QVERIFY(unlockedWithPassword(m_collection));
        QCOMPARE(collectionLocked(m_collection), false);
        QCOMPARE(runTask(m_secrets.read(service, account)), QByteArray("pk_before"));
        QCOMPARE(runTask(m_secrets.write(service, account, "pk_unlocked")), SecretServiceStore::successStatus);
        QCOMPARE(runTask(m_secrets.read(service, account)), QByteArray("pk_unlocked"));
    }

    void aReadAfterTheDaemonRestartedOpensANewSession() {
        QCOMPARE(runTask(m_secrets.write(service, account, "pk_restart_read")), SecretServiceStore::successStatus);
        restartKeyring();
        QCOMPARE(runTask(m_secrets.read(service, account)), QByteArray("pk_restart_read"));
    }

    void aWriteAfterTheDaemonRestartedOpensANewSession() {
        QCOMPARE(runTask(m_secrets.read(service, account)), QByteArray("pk_restart_read"));
        restartKeyring();
        QCOMPARE(runTask(m_secrets.write(service, account, "pk_restart_write")), SecretServiceStore::successStatus);
        QCOMPARE(runTask(m_secrets.read(service, account)), QByteArray("pk_restart_write"));
    }

    void cleanupTestCase() {
        runTask(m_secrets.remove(service, account));
        if (m_daemon) {
            m_daemon->terminate();
            m_daemon->waitForFinished(5000);
        }
    }
};

NORVANEBAR_TEST_GUILESS_MAIN(SecretServiceRecoveryTest)
#include "SecretServiceRecoveryTest.moc"
