#include "core/auth/KeychainStore.h"
#include "core/auth/KeychainStoreError.h"
#include "support/TestMain.h"

#include "support/MemorySecretStore.h"
#include "support/RunTask.h"

#include <QTest>
#include <memory>

namespace {
const QString service = QStringLiteral("com.norvanebar.app");
const QString account = QStringLiteral("norvane-token-42");
} // namespace

class KeychainStoreTest : public QObject {
    Q_OBJECT

    std::unique_ptr<MemorySecretStore> m_secrets;
    KeychainStore m_item;

private slots:
    void init() {
        m_secrets = std::make_unique<MemorySecretStore>();
        m_item = KeychainStore{service, account, m_secrets.get()};
    }

    void aWrittenValueReadsBack() {
        runTask(m_item.write(QStringLiteral("pk_1_abc")));
        QCOMPARE(m_secrets->item(service, account), QByteArray("pk_1_abc"));
        QCOMPARE(runTask(m_item.read()), QStringLiteral("pk_1_abc"));
    }

    void writeOfAnEmptyStringStoresAnEmptyItemAndReadGivesAnEmptyString() {
        runTask(m_item.write(QString()));
        QCOMPARE(m_secrets->item(service, account), QByteArray());
        const std::optional<QString> read = runTask(m_item.read());
        QVERIFY(read.has_value());
        QCOMPARE(*read, QString());
    }

    void aMissingItemReadsAsAbsent() { QCOMPARE(runTask(m_item.read()), std::nullopt); }

    void textIsStoredAsUtf8() {
        runTask(m_item.write(QStringLiteral("pk_ü€")));
        QCOMPARE(m_secrets->item(service, account), QStringLiteral("pk_ü€").toUtf8());
        QCOMPARE(runTask(m_item.read()), QStringLiteral("pk_ü€"));
    }

    void bytesThatAreNotUtf8ReadAsAbsent() {
        m_secrets->setItem(service, account, QByteArray("pk_\xff\xfe", 5));
        QCOMPARE(runTask(m_item.read()), std::nullopt);
        m_secrets->setItem(service, account, QByteArray("pk_\xc3", 4)); // cut off inside a character
        QCOMPARE(runTask(m_item.read()), std::nullopt);
    }

    void aByteOrderMarkIsKeptAsItStands() {
        m_secrets->setItem(service, account, QByteArray("\xef\xbb\xbfpk_1"));
        QCOMPARE(runTask(m_item.read()), QString(QChar(0xFEFF)) + QStringLiteral("pk_1"));
    }

    void writeRemovesTheItemThenAddsIt() {
        runTask(m_item.write(QStringLiteral("a")));
        QCOMPARE(m_secrets->log(), QStringList({"remove " + account, "write " + account}));
    }

    void aFailedWriteFailsWithTheStatusInTheTextAndTheOldValueIsGone() {
        m_secrets->setItem(service, account, "old");
        m_secrets->failWrites(account, -25299);
        try {
            runTask(m_item.write(QStringLiteral("new")));
            QFAIL("the write did not fail");
        } catch (const KeychainStoreError& error) {
            QCOMPARE(error.failure(), KeychainStoreError::Case(KeychainStoreError::WriteFailed{-25299}));
            QCOMPARE(error.errorDescription(),
                     QStringLiteral("Couldn't save your API token to the system keyring (error -25299)."));
            QCOMPARE(QByteArray(error.what()), error.errorDescription().toUtf8());
        }
        QCOMPARE(m_secrets->item(service, account), std::nullopt);
    }

    void removingWhatIsNotThereIsNoFailure() {
        runTask(m_item.remove());
        QCOMPARE(m_secrets->log(), QStringList({"remove " + account}));
    }

    void removeDeletesTheItem() {
        m_secrets->setItem(service, account, "pk_1");
        runTask(m_item.remove());
        QCOMPARE(m_secrets->item(service, account), std::nullopt);
    }

    void anOperationOutlivesTheValueThatStartedIt() {
        QCoro::Task<> write = KeychainStore{service, account, m_secrets.get()}.write(QStringLiteral("pk_late"));
        runTask(std::move(write));
        QCOMPARE(m_secrets->item(service, account), QByteArray("pk_late"));
    }
};

NORVANEBAR_TEST_GUILESS_MAIN(KeychainStoreTest)
#include "KeychainStoreTest.moc"
