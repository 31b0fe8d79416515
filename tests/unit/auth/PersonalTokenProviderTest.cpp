#include "core/auth/PersonalTokenProvider.h"
#include "core/auth/PersonalTokenError.h"
#include "support/TestMain.h"

#include "support/MemorySecretStore.h"
#include "support/RunTask.h"

#include <QTest>
#include <memory>

using namespace std::chrono_literals;

namespace {
const QString service = QStringLiteral("com.norvanebar.app");
const QString legacyAccount = QStringLiteral("norvane-personal-token");
const QString account42 = QStringLiteral("norvane-token-42");
} // namespace

class PersonalTokenProviderTest : public QObject {
    Q_OBJECT

    std::unique_ptr<MemorySecretStore> m_secrets;
    std::unique_ptr<PersonalTokenProvider> m_provider;

private slots:
    void init() {
        m_provider.reset();
        m_secrets = std::make_unique<MemorySecretStore>();
        m_provider = std::make_unique<PersonalTokenProvider>(m_secrets.get());
    }

    void theItemsAreNamedByTheServiceAndAccountWords() {
        QCOMPARE(m_provider->legacyKeychain(), (KeychainStore{service, legacyAccount, m_secrets.get()}));
        QCOMPARE(m_provider->keychain(42), (KeychainStore{service, account42, m_secrets.get()}));
        QCOMPARE(m_provider->keychain(-7).account, QStringLiteral("norvane-token--7"));
        QCOMPARE(m_provider->keychain(9007199254740993).account, QStringLiteral("norvane-token-9007199254740993"));
    }

    void cachedStartsAbsentAndIsTheAuthorizationValue() {
        QCOMPARE(m_provider->cached(), std::nullopt);
        QCOMPARE(m_provider->authorizationValue(), std::nullopt);
        m_provider->setCached(QStringLiteral("pk_1"));
        QCOMPARE(m_provider->authorizationValue(), QStringLiteral("pk_1"));
        QVERIFY2(m_secrets->log().isEmpty(), "the header value never touches the keychain");
    }

    void activateTakesTheAccountsOwnItem() {
        m_secrets->setItem(service, account42, "pk_own");
        m_secrets->setItem(service, legacyAccount, "pk_legacy");
        runTask(m_provider->activate(42));
        QCOMPARE(m_provider->cached(), QStringLiteral("pk_own"));
        QCOMPARE(m_secrets->log(), QStringList({"read " + account42}));
    }

    void activateWithAnIdThatHasNoItemWhileALegacyItemExistsTakesTheLegacyTokenThenMovesIt() {
        m_secrets->setItem(service, legacyAccount, "pk_legacy");
        runTask(m_provider->activate(42));
        QCOMPARE(m_provider->cached(), QStringLiteral("pk_legacy"));
        // The service accepted it: the next successful validation commits it.
        runTask(m_provider->commitActiveToken(42));
        QCOMPARE(m_secrets->item(service, account42), QByteArray("pk_legacy"));
        QCOMPARE(m_secrets->item(service, legacyAccount), std::nullopt);
        // And a later activation finds it under the account.
        m_provider->setCached(std::nullopt);
        runTask(m_provider->activate(42));
        QCOMPARE(m_provider->cached(), QStringLiteral("pk_legacy"));
    }

    void activateWithNoIdAndNoLegacyItemLeavesCachedAbsent() {
        m_provider->setCached(QStringLiteral("pk_before"));
        runTask(m_provider->activate(std::nullopt));
        QCOMPARE(m_provider->cached(), std::nullopt);
        QCOMPARE(m_secrets->log(), QStringList({"read " + legacyAccount}));
    }

    void theLatestActivationWinsWhenActivationsOverlap() {
        m_secrets->setItem(service, account42, "pk_42");
        m_secrets->setItem(service, QStringLiteral("norvane-token-7"), "pk_7");
        m_secrets->delayReads(account42, 50ms);
        QCoro::Task<> slow = m_provider->activate(42);
        runTask(m_provider->activate(7));
        runTask(std::move(slow));
        QCOMPARE(m_provider->cached(), QStringLiteral("pk_7"));
    }

    void anAssignmentDuringAnActivationWins() {
        m_secrets->setItem(service, account42, "pk_42");
        m_secrets->delayReads(account42, 50ms);
        QCoro::Task<> activation = m_provider->activate(42);
        m_provider->setCached(std::nullopt);
        runTask(std::move(activation));
        QCOMPARE(m_provider->cached(), std::nullopt);
    }

    void anActivationOutlivingItsProviderDoesNothing() {
        m_secrets->setItem(service, account42, "pk_42");
        m_secrets->delayReads(account42, 20ms);
        QCoro::Task<> activation = m_provider->activate(42);
        // The read is out and unanswered when the provider goes.
        QCOMPARE(m_secrets->log(), QStringList({"read " + account42}));
        QVERIFY(!activation.isReady());
        m_provider.reset();
        // Answered now, it finds the item and touches neither the store nor the provider's memory,
        // which ASan would report.
        runTask(std::move(activation));
        QCOMPARE(m_secrets->log(), QStringList({"read " + account42}));
        QCOMPARE(m_secrets->item(service, account42), QByteArray("pk_42"));
        QCOMPARE(m_secrets->item(service, legacyAccount), std::nullopt);
    }

    void commitActiveTokenWithAnEmptyCachedDoesNotDeleteTheLegacyItem() {
        m_secrets->setItem(service, legacyAccount, "pk_legacy");
        m_provider->setCached(QString());
        runTask(m_provider->commitActiveToken(42));
        m_provider->setCached(std::nullopt);
        runTask(m_provider->commitActiveToken(42));
        QCOMPARE(m_secrets->item(service, legacyAccount), QByteArray("pk_legacy"));
        QCOMPARE(m_secrets->item(service, account42), std::nullopt);
        QVERIFY(m_secrets->log().isEmpty());
    }

    void aFailedCommitFailsInTheKeychainsWordsAndKeepsTheLegacyItem() {
        m_secrets->setItem(service, legacyAccount, "pk_legacy");
        m_secrets->failWrites(account42, 7);
        m_provider->setCached(QStringLiteral("pk_legacy"));
        try {
            runTask(m_provider->commitActiveToken(42));
            QFAIL("the commit did not fail");
        } catch (const PersonalTokenError& error) {
            QVERIFY(error.is<PersonalTokenError::KeychainFailed>());
            QCOMPARE(error.errorDescription(),
                     QStringLiteral("Couldn't save your API token to the system keyring (error 7)."));
        }
        QCOMPARE(m_secrets->item(service, legacyAccount), QByteArray("pk_legacy"));
        QCOMPARE(m_provider->cached(), QStringLiteral("pk_legacy"));
    }

    void theInvalidFormatTextTellsWhereTheTokenIs() {
        QCOMPARE(
            PersonalTokenError::invalidFormat().errorDescription(),
            QStringLiteral("That doesn't look like a Norvane personal API token. Copy the full token from Norvane → "
                           "Settings → Apps (it starts with pk_)."));
    }

    void normalizeOfATokenWrappedInANoBreakSpaceAZeroWidthSpaceAndANewlineGivesTheBareToken() {
        QCOMPARE(PersonalTokenProvider::normalize(QStringLiteral("\u00A0\u200Bpk_12_AbC\n")),
                 QStringLiteral("pk_12_AbC"));
        QCOMPARE(PersonalTokenProvider::normalize(QStringLiteral("\npk_12\u200B_Ab\u00A0C\uFEFF ")),
                 QStringLiteral("pk_12_AbC"));
    }

    void normalizeOfTheWordBearerInCapitalsABlankAndATokenGivesTheTokenWithItsCaseUnchanged() {
        QCOMPARE(PersonalTokenProvider::normalize(QStringLiteral("BEARER pk_12_AbC")), QStringLiteral("pk_12_AbC"));
        QCOMPARE(PersonalTokenProvider::normalize(QStringLiteral(" Bearer   pk_12_AbC \t")),
                 QStringLiteral("pk_12_AbC"));
    }

    void normalizeOfTheWordBearerWithoutABlankBehindItChangesNothing() {
        QCOMPARE(PersonalTokenProvider::normalize(QStringLiteral("BEARERpk_12_AbC")),
                 QStringLiteral("BEARERpk_12_AbC"));
        QCOMPARE(PersonalTokenProvider::normalize(QStringLiteral("Bearer")), QStringLiteral("Bearer"));
    }
};

NORVANEBAR_TEST_GUILESS_MAIN(PersonalTokenProviderTest)
#include "PersonalTokenProviderTest.moc"
