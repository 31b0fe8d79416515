#include "support/AppStateFixture.h"
#include "support/TestMain.h"

#include <QJsonArray>
#include <QSignalSpy>
#include <QTest>

// Sign-in, validation and the account operations of the central state, against norvane-sandbox
// over HTTP, with secrets in memory.
class AppStateSignInTest : public QObject {
    Q_OBJECT

    SandboxProcess m_sandbox;
    std::unique_ptr<AppStateFixture> m_fixture;
    QList<SandboxProcess::Token> m_tokens;

    const SandboxProcess::Token& user(qsizetype index) const { return m_tokens[index]; }
    void writeSettings(const QJsonObject& settings) { m_fixture->writeSettings(settings); }
    void storeToken(qint64 userID, const QString& token) { m_fixture->storeToken(userID, token); }
    AppState& start() { return m_fixture->start(); }
    MemorySecretStore& secrets() { return m_fixture->memorySecrets(); }

    static QString tokenItem(qint64 userID) { return QStringLiteral("norvane-token-") + QString::number(userID); }
    qsizetype userRequests() { return countRequests(QStringLiteral("/api/v2/user")); }
    qsizetype countRequests(const QString& path) {
        qsizetype count = 0;
        for (const QJsonValue& request : m_sandbox.requests()) {
            count += request[QStringLiteral("path")].toString() == path ? 1 : 0;
        }
        return count;
    }
    const NVUser* signedInUser() const { return m_fixture->app().authState().user(); }

private slots:
    void initTestCase() {
        QVERIFY2(m_sandbox.start(), qPrintable(m_sandbox.errorString()));
        m_tokens = m_sandbox.tokens();
        QVERIFY(m_tokens.size() >= 2);
    }

    void init() {
        QVERIFY(m_sandbox.reset());
        m_fixture = std::make_unique<AppStateFixture>(&m_sandbox);
    }

    void cleanup() { m_fixture.reset(); }

    void aFirstLaunchWithoutAStoredTokenAsksNothing() {
        AppState& app = start();
        runTask(app.bootstrap());
        QVERIFY(app.authState().is<AuthState::SignedOut>());
        QCOMPARE(userRequests(), 0);
    }

    void aStoredTokenSignsInWithoutAWord() {
        writeSettings({{QStringLiteral("activeAccountID"), user(0).userID}});
        storeToken(user(0).userID, user(0).token);
        AppState& app = start();
        QSignalSpy changes(&app, &AppState::authStateChanged);
        runTask(app.bootstrap());
        QVERIFY(signedInUser());
        QCOMPARE(signedInUser()->id, user(0).userID);
        QCOMPARE(changes.count(), 2); // validating, then signed in
    }

    void aPastedTokenWithBlanksAndABearerWordIsCleaned() {
        AppState& app = start();
        const auto message = runTask(app.signIn(QStringLiteral("  BeArEr ") + user(0).token + QStringLiteral("\n")));
        QCOMPARE(message, std::nullopt);
        QVERIFY(signedInUser());
        QCOMPARE(secrets().item(KeychainStore::appService, tokenItem(user(0).userID)), user(0).token.toUtf8());
        QCOMPARE(app.settings().settings().activeAccountID, std::optional(user(0).userID));
        QCOMPARE(app.settings().settings().accounts.size(), 1);
    }

    void threeCharactersAreNoTokenButFourAre() {
        AppState& app = start();
        QCOMPARE(
            runTask(app.signIn(QStringLiteral("pk_"))),
            std::optional(QStringLiteral("That doesn't look like a Norvane personal API token. Copy the full token "
                                         "from Norvane → Settings → Apps (it starts with pk_).")));
        QCOMPARE(userRequests(), 0);
        // "pk_x" passes the format check and reaches the service, which rejects it.
        const auto message = runTask(app.signIn(QStringLiteral("pk_x")));
        QCOMPARE(userRequests(), 1);
        QVERIFY(message && !message->isEmpty());
        QVERIFY(app.authState().is<AuthState::SignedOut>());
    }

    void aRejectedPasteLeavesTheSignedInAccountAlone() {
        AppState& app = start();
        QCOMPARE(runTask(app.signIn(user(0).token)), std::nullopt);
        const auto message = runTask(app.signIn(QStringLiteral("pk_not_a_demo_token")));
        QVERIFY(message);
        QCOMPARE(signedInUser()->id, user(0).userID);
        QCOMPARE(app.tokenProvider().cached(), std::optional(user(0).token));
    }

    void aKeychainWriteFailureIsShownAndNoAccountIsAdded() {
        secrets().failWrites(tokenItem(user(0).userID), 34);
        AppState& app = start();
        QCOMPARE(runTask(app.signIn(user(0).token)),
                 std::optional(QStringLiteral("Couldn't save your API token to the system keyring (error 34).")));
        QVERIFY(app.settings().settings().accounts.isEmpty());
        QVERIFY(app.authState().is<AuthState::SignedOut>());
    }

    void aRejectedStoredTokenIsForgottenFromMemoryButNotFromTheKeychain() {
        writeSettings({{QStringLiteral("activeAccountID"), 4242}});
        storeToken(4242, QStringLiteral("pk_revoked"));
        AppState& app = start();
        runTask(app.bootstrap());
        QVERIFY(app.authState().is<AuthState::SignedOut>());
        QCOMPARE(app.tokenProvider().cached(), std::nullopt);
        QVERIFY(secrets().item(KeychainStore::appService, tokenItem(4242)));
        QCOMPARE(app.settings().settings().activeAccountID, std::optional<qint64>(4242));
    }

    void anUnreachableServiceKeepsTheTokenInMemory() {
        writeSettings({{QStringLiteral("activeAccountID"), user(0).userID}});
        storeToken(user(0).userID, user(0).token);
        QVERIFY(m_sandbox.addFault(SandboxFault::dropConnection(QStringLiteral("/api/v2/user"))));
        AppState& app = start();
        runTask(app.bootstrap());
        QVERIFY(app.authState().is<AuthState::SignedOut>());
        QCOMPARE(app.tokenProvider().cached(), std::optional(user(0).token));
    }

    void theLegacyTokenMovesToItsAccountAtTheFirstValidation() {
        secrets().setItem(KeychainStore::appService, QStringLiteral("norvane-personal-token"), user(0).token.toUtf8());
        AppState& app = start();
        runTask(app.bootstrap());
        QCOMPARE(signedInUser()->id, user(0).userID);
        QCOMPARE(secrets().item(KeychainStore::appService, tokenItem(user(0).userID)), user(0).token.toUtf8());
        QCOMPARE(secrets().item(KeychainStore::appService, QStringLiteral("norvane-personal-token")), std::nullopt);
    }

    void twoQuickSwitchesEndWithTheLaterAccount() {
        storeToken(user(0).userID, user(0).token);
        storeToken(user(1).userID, user(1).token);
        AppState& app = start();
        // The first validation is slow, so it returns after the second.
        QVERIFY(m_sandbox.addFault(SandboxFault::delay(QStringLiteral("/api/v2/user"), 300)));
        bool firstEnded = false;
        startTask(&app, app.switchAccount(user(0).userID), [&firstEnded] { firstEnded = true; });
        runTask(app.switchAccount(user(1).userID));
        QTRY_VERIFY(firstEnded);
        QCOMPARE(signedInUser()->id, user(1).userID);
        QCOMPARE(app.settings().settings().activeAccountID, std::optional(user(1).userID));
    }

    void signingOutDuringAValidationStaysSignedOut() {
        writeSettings({{QStringLiteral("activeAccountID"), user(0).userID}});
        storeToken(user(0).userID, user(0).token);
        QVERIFY(m_sandbox.addFault(SandboxFault::delay(QStringLiteral("/api/v2/user"), 200)));
        AppState& app = start();
        bool ended = false;
        startTask(&app, app.bootstrap(), [&ended] { ended = true; });
        QTRY_VERIFY(app.authState().is<AuthState::Validating>());
        app.signOut();
        QTRY_VERIFY(ended);
        QVERIFY(app.authState().is<AuthState::SignedOut>());
        QCOMPARE(app.settings().settings().activeAccountID, std::nullopt);
    }

    void signingOutWhileTheTokenIsCommittedLeavesNoSecret() {
        writeSettings({{QStringLiteral("activeAccountID"), user(0).userID}});
        storeToken(user(0).userID, user(0).token);
        // The validated token is written back slowly, and the sign-out comes while it is.
        secrets().delayWrites(tokenItem(user(0).userID), std::chrono::milliseconds(300));
        AppState& app = start();
        bool ended = false;
        startTask(&app, app.bootstrap(), [&ended] { ended = true; });
        QTRY_VERIFY(secrets().log().contains(QStringLiteral("write ") + tokenItem(user(0).userID)));
        app.signOut();
        QTRY_VERIFY(ended);
        QCOMPARE(secrets().item(KeychainStore::appService, tokenItem(user(0).userID)), std::nullopt);
        QVERIFY(app.authState().is<AuthState::SignedOut>());
    }

    void switchingToTheSignedInAccountWithoutForceKeepsTheDraft() {
        AppState& app = start();
        QCOMPARE(runTask(app.signIn(user(0).token)), std::nullopt);
        app.draft().setName(QStringLiteral("Half-written"));
        const qsizetype before = userRequests();
        runTask(app.switchAccount(user(0).userID));
        QCOMPARE(app.draft().name(), QStringLiteral("Half-written"));
        QCOMPARE(userRequests(), before);
        runTask(app.switchAccount(user(0).userID, true));
        QCOMPARE(app.draft().name(), QString());
        QCOMPARE(userRequests(), before + 1);
        QCOMPARE(signedInUser()->id, user(0).userID);
    }

    void eachAccountKeepsItsOwnLocation() {
        AppState& app = start();
        QCOMPARE(runTask(app.signIn(user(1).token)), std::nullopt);
        QCOMPARE(runTask(app.signIn(user(0).token)), std::nullopt);
        const SavedLocation inbox{QStringLiteral("w1"), QStringLiteral("l1"), QStringLiteral("Inbox"),
                                  QStringLiteral("Space")};
        app.settings().set(&AppSettings::lastLocation, inbox);
        runTask(app.switchAccount(user(1).userID));
        QCOMPARE(app.settings().settings().lastLocation, std::nullopt);
        runTask(app.switchAccount(user(0).userID));
        QCOMPARE(app.settings().settings().lastLocation, std::optional(inbox));
    }

    void removingAnInactiveAccountDisturbsNothing() {
        AppState& app = start();
        QCOMPARE(runTask(app.signIn(user(1).token)), std::nullopt);
        QCOMPARE(runTask(app.signIn(user(0).token)), std::nullopt);
        app.draft().setName(QStringLiteral("Kept"));
        runTask(app.removeAccount(user(1).userID));
        QCOMPARE(signedInUser()->id, user(0).userID);
        QCOMPARE(app.draft().name(), QStringLiteral("Kept"));
        QCOMPARE(app.settings().settings().accounts.size(), 1);
        QCOMPARE(secrets().item(KeychainStore::appService, tokenItem(user(1).userID)), std::nullopt);
    }

    void removingTheActiveAccountSwitchesToTheFirstThatRemains_data() {
        QTest::addColumn<int>("removed");
        QTest::addColumn<int>("next");
        QTest::addColumn<QList<int>>("remaining");
        // By their place in the stored order.
        QTest::newRow("the first of three") << 0 << 1 << QList<int>{1, 2};
        QTest::newRow("the middle one of three") << 1 << 0 << QList<int>{0, 2};
    }

    void removingTheActiveAccountSwitchesToTheFirstThatRemains() {
        QFETCH(int, removed);
        QFETCH(int, next);
        QFETCH(QList<int>, remaining);
        QVERIFY(m_tokens.size() >= 3);
        AppState& app = start();
        // Stored in the order of signing in; the last one signed in is active until the switch.
        for (int index = 0; index < 3; ++index) {
            QCOMPARE(runTask(app.signIn(user(index).token)), std::nullopt);
        }
        runTask(app.switchAccount(user(removed).userID));
        QCOMPARE(signedInUser()->id, user(removed).userID);

        runTask(app.removeAccount(user(removed).userID));
        QCOMPARE(signedInUser()->id, user(next).userID);
        QCOMPARE(app.settings().settings().activeAccountID, std::optional(user(next).userID));
        QList<qint64> stored;
        for (const StoredAccount& account : app.settings().settings().accounts) {
            stored.append(account.id);
        }
        QCOMPARE(stored, (QList<qint64>{user(remaining[0]).userID, user(remaining[1]).userID}));
    }

    void removingTheLastAccountSignsOut() {
        AppState& app = start();
        QCOMPARE(runTask(app.signIn(user(0).token)), std::nullopt);
        runTask(app.removeAccount(user(0).userID));
        QVERIFY(app.authState().is<AuthState::SignedOut>());
        QVERIFY(app.settings().settings().accounts.isEmpty());
    }

    void signingOutKeepsOtherAccountsAndTheNextLaunchShowsOnboarding() {
        AppState& app = start();
        QCOMPARE(runTask(app.signIn(user(1).token)), std::nullopt);
        QCOMPARE(runTask(app.signIn(user(0).token)), std::nullopt);
        app.signOut();
        QTRY_COMPARE(secrets().item(KeychainStore::appService, tokenItem(user(0).userID)), std::nullopt);
        QCOMPARE(app.settings().settings().activeAccountID, std::nullopt);
        QCOMPARE(app.settings().settings().accounts.size(), 1);
        QCOMPARE(app.settings().settings().accounts.constFirst().id, user(1).userID);

        AppState& next = start();
        runTask(next.bootstrap());
        QVERIFY(next.authState().is<AuthState::SignedOut>());
    }

    void signingOutAfterAFailedValidationStillRemovesThatAccount() {
        writeSettings({{QStringLiteral("activeAccountID"), 4242},
                       {QStringLiteral("accounts"),
                        QJsonArray{QJsonObject{{QStringLiteral("id"), 4242},
                                               {QStringLiteral("displayName"), QStringLiteral("Gone")}}}}});
        storeToken(4242, QStringLiteral("pk_revoked"));
        AppState& app = start();
        runTask(app.bootstrap());
        QVERIFY(app.authState().is<AuthState::SignedOut>());
        app.signOut();
        QVERIFY(app.settings().settings().accounts.isEmpty());
        QTRY_COMPARE(secrets().item(KeychainStore::appService, tokenItem(4242)), std::nullopt);
    }

    void aRenamedAccountKeepsItsPlace() {
        writeSettings({{QStringLiteral("accounts"),
                        QJsonArray{QJsonObject{{QStringLiteral("id"), user(0).userID},
                                               {QStringLiteral("displayName"), QStringLiteral("Old name")}},
                                   QJsonObject{{QStringLiteral("id"), 99},
                                               {QStringLiteral("displayName"), QStringLiteral("Other")}}}}});
        AppState& app = start();
        QCOMPARE(runTask(app.signIn(user(0).token)), std::nullopt);
        const QList<StoredAccount> accounts = app.settings().settings().accounts;
        QCOMPARE(accounts.size(), 2);
        QCOMPARE(accounts.at(0).id, user(0).userID);
        QCOMPARE(accounts.at(0).displayName, signedInUser()->displayName());
    }

    void anEmptyCustomValueRemovesItsField() {
        AppState& app = start();
        app.setCustomValue(CustomValue::text(QStringLiteral("x")), QStringLiteral("f1"));
        QCOMPARE(app.draft().custom().size(), 1);
        app.setCustomValue(CustomValue::text(QStringLiteral(" \t ")), QStringLiteral("f1"));
        QVERIFY(app.draft().custom().isEmpty());
    }
};

NORVANEBAR_TEST_GUILESS_MAIN(AppStateSignInTest)
#include "AppStateSignInTest.moc"
