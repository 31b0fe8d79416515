// A session bus without a Secret Service: reads give absent and writes fail, at once.
#include "core/auth/KeychainStoreError.h"
#include "core/auth/PersonalTokenProvider.h"
#include "platform/linux/SecretServiceStore.h"
#include "support/TestMain.h"

#include "support/RunTask.h"

#include <QDBusConnection>
#include <QDBusConnectionInterface>
#include <QElapsedTimer>
#include <QTest>

namespace {
const QString service = QStringLiteral("com.norvanebar.app");
const QString account = QStringLiteral("norvane-token-42");
// Far below the store's own timeout: the failure is an answer, not a wait.
constexpr qint64 quickMSecs = 1000;
} // namespace

class SecretServiceMissingTest : public QObject {
    Q_OBJECT

    SecretServiceStore m_secrets;
    QElapsedTimer m_elapsed;

private slots:
    void initTestCase() {
        const QDBusConnection bus = QDBusConnection::sessionBus();
        QVERIFY2(bus.isConnected(), "the test runs on the session bus of its own desktop session");
        QVERIFY2(!bus.interface()->isServiceRegistered(QStringLiteral("org.freedesktop.secrets")),
                 "the session must have no Secret Service");
    }

    void init() { m_elapsed.start(); }

    void aReadGivesAbsentQuickly() {
        QCOMPARE(runTask(m_secrets.read(service, account)), std::nullopt);
        QVERIFY(m_elapsed.elapsed() < quickMSecs);
    }

    void aWriteFailsWithANonZeroStatusQuickly() {
        const int status = runTask(m_secrets.write(service, account, "pk_42"));
        QVERIFY(status != 0);
        QVERIFY2(status != SecretServiceStore::timedOutStatus, "the store answered; it did not time out");
        QVERIFY(m_elapsed.elapsed() < quickMSecs);
    }

    void aRemoveEndsQuickly() {
        runTask(m_secrets.remove(service, account));
        QVERIFY(m_elapsed.elapsed() < quickMSecs);
    }

    void aKeychainWriteFailsWithTheStatusInItsText() {
        try {
            runTask(KeychainStore{service, account, &m_secrets}.write(QStringLiteral("pk_42")));
            QFAIL("the write did not fail");
        } catch (const KeychainStoreError& error) {
            QVERIFY(error.errorDescription().startsWith(
                QStringLiteral("Couldn't save your API token to the system keyring (error ")));
        }
        QVERIFY(m_elapsed.elapsed() < quickMSecs);
    }

    void activationFindsNoTokenAsOnAFirstLaunch() {
        PersonalTokenProvider provider(&m_secrets);
        runTask(provider.activate(42));
        QCOMPARE(provider.cached(), std::nullopt);
        QVERIFY(m_elapsed.elapsed() < quickMSecs);
    }
};

NORVANEBAR_TEST_GUILESS_MAIN(SecretServiceMissingTest)
#include "SecretServiceMissingTest.moc"
