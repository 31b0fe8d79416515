#include "core/storage/AttachmentStorageSettings.h"
#include "core/storage/GoogleDriveAuthError.h"
#include "core/storage/StorageTransfer.h"
#include "support/GoogleSandboxFixture.h"
#include "support/RecordingLinkActions.h"
#include "support/RunTask.h"
#include "support/SandboxFault.h"
#include "support/TestMain.h"

#include <QTemporaryDir>
#include <QTest>
#include <QUrlQuery>

namespace {
// The text of the GoogleDriveAuthError the task throws, or a note that it threw none.
template <typename T> QString authFailureOf(QCoro::Task<T> task) {
    try {
        runTask(std::move(task));
    } catch (const GoogleDriveAuthError& error) {
        return error.errorDescription();
    }
    return QStringLiteral("(no GoogleDriveAuthError)");
}

const QDateTime fixedNow = QDateTime::fromSecsSinceEpoch(1'900'000'000, Qt::UTC);
} // namespace

class GoogleSignInSandboxTest : public QObject {
    Q_OBJECT

    SandboxProcess m_sandbox;

    // A sign-in whose tokens the sandbox issued, on a clock fixed at `fixedNow`.
    std::unique_ptr<GoogleSandboxFixture> signedInAtFixedTime() {
        auto google = std::make_unique<GoogleSandboxFixture>(
            m_sandbox, QString::fromLatin1(GoogleSandboxFixture::clientID), [] { return fixedNow; });
        runTask(google->auth().signIn());
        return google;
    }

    qsizetype tokenRequests(GoogleSandboxFixture& google) {
        return google.requestsTo(QStringLiteral("/google/token")).size();
    }

private slots:
    void initTestCase() { QVERIFY2(m_sandbox.start(), qPrintable(m_sandbox.errorString())); }

    void init() { QVERIFY(GoogleSandboxFixture::startAfresh(m_sandbox)); }

    void signingInStoresTheTokensTheSandboxIssuedForTheVerifiedCode() {
        GoogleSandboxFixture google(m_sandbox, QString::fromLatin1(GoogleSandboxFixture::clientID),
                                    [] { return fixedNow; });
        runTask(google.auth().signIn());

        QCOMPARE(google.browser().opened().size(), 1);
        const QUrl page = google.browser().opened().first();
        QCOMPARE(page.path(), QStringLiteral("/google/o/oauth2/v2/auth"));
        QStringList names;
        for (const auto& [name, value] : QUrlQuery(page).queryItems()) {
            names.append(name);
        }
        QCOMPARE(names, QStringList({"client_id", "redirect_uri", "response_type", "scope", "code_challenge",
                                     "code_challenge_method", "access_type", "prompt", "state"}));

        const QJsonObject state = google.google();
        QCOMPARE(state[QStringLiteral("grants")].toArray().size(), 1);
        QCOMPARE(google.item("google-drive-refresh-token"),
                 state[QStringLiteral("grants")][0][QStringLiteral("refreshToken")].toString());
        QVERIFY(state[QStringLiteral("accessTokens")].toArray().contains(*google.item("google-drive-access-token")));
        QCOMPARE(google.item("google-drive-access-token-expiry"), QString::number(fixedNow.toSecsSinceEpoch() + 3599));
        QVERIFY(google.auth().isConnected());
        QVERIFY(!google.auth().isWaitingForBrowser());

        const QJsonArray tokenCalls = google.requestsTo(QStringLiteral("/google/token"));
        QCOMPARE(tokenCalls.size(), 1);
        QCOMPARE(tokenCalls[0][QStringLiteral("status")].toInt(), 200);
    }

    void theAttachmentsPaneReportsASignInAndTheConnectionItLeaves() {
        GoogleSandboxFixture google(m_sandbox);
        QTemporaryDir folder;
        SettingsStore settings(folder.filePath(QStringLiteral("settings.json")));
        const StorageProviderRegistry providers;
        AttachmentStorageSettings pane(settings, providers, google.credentials(), google.auth());

        runTask(pane.connectGoogle());
        QCOMPARE(pane.testResult(), QStringLiteral("Connected to Google Drive."));
        QVERIFY(pane.testSucceeded());
        QVERIFY(pane.googleConnected());
        QVERIFY(!pane.isConnectingGoogle());

        google.google({{QStringLiteral("authorization"), QStringLiteral("deny")}});
        runTask(pane.connectGoogle());
        QCOMPARE(pane.testResult(), QStringLiteral("access_denied"));
        QVERIFY(!pane.testSucceeded());
        // The tokens of the first sign-in stay.
        QVERIFY(pane.googleConnected());
    }

    void aCallbackWithAWrongStateAndAValidCodeDoesNotExchangeTheCode() {
        GoogleSandboxFixture google(m_sandbox);
        google.google({{QStringLiteral("authorization"), QStringLiteral("wrongState")}});
        QCOMPARE(authFailureOf(google.auth().signIn()), QStringLiteral("Sign-in response did not match the request."));
        QVERIFY(QUrlQuery(google.browser().callbacks().value(0)).hasQueryItem(QStringLiteral("code")));
        QCOMPARE(tokenRequests(google), 0);
        QCOMPARE(google.item("google-drive-access-token"), std::nullopt);
    }

    void aCallbackWithTheRightStateAndAnErrorThrowsThatTextAsTheMessage() {
        GoogleSandboxFixture google(m_sandbox);
        google.google({{QStringLiteral("authorization"), QStringLiteral("deny")}});
        QCOMPARE(authFailureOf(google.auth().signIn()), QStringLiteral("access_denied"));
        QCOMPARE(tokenRequests(google), 0);
    }

    void aCallbackWithTheRightStateAndNeitherCodeNorErrorSaysSo() {
        RecordingLinkActions browser;
        GoogleSandboxFixture google(m_sandbox);
        GoogleDriveAuthManager auth(google.environmentWith(browser));
        QCoro::Task<> signingIn = auth.signIn();
        QCOMPARE(browser.opened().size(), 1);
        const QString state = QUrlQuery(browser.opened().first()).queryItemValue(QStringLiteral("state"));
        QVERIFY(auth.handleCallback(QUrl(QStringLiteral("com.norvanebar.app:/oauth/google?state=") + state)));
        QCOMPARE(authFailureOf(std::move(signingIn)), QStringLiteral("No authorization code returned."));
    }

    void cancellingTheWaitingSignInEndsItAsCancelled() {
        RecordingLinkActions browser;
        GoogleSandboxFixture google(m_sandbox);
        GoogleDriveAuthManager auth(google.environmentWith(browser));
        QCoro::Task<> signingIn = auth.signIn();
        QVERIFY(auth.isWaitingForBrowser());
        // An address of another scheme is no answer.
        QVERIFY(!auth.handleCallback(QUrl(QStringLiteral("https://example.com/?code=x"))));
        QVERIFY(auth.isWaitingForBrowser());
        auth.cancelSignIn();
        QVERIFY(!auth.isWaitingForBrowser());
        QCOMPARE(authFailureOf(std::move(signingIn)), QStringLiteral("Sign-in was cancelled."));
        // Nothing waits any more.
        QVERIFY(!auth.handleCallback(QUrl(QStringLiteral("com.norvanebar.app:/oauth/google?code=x"))));
    }

    void withoutAClientIDNeitherSignInNorRefreshStarts() {
        GoogleSandboxFixture google(m_sandbox, std::nullopt);
        const QString text = QStringLiteral("Google OAuth client ID is not configured for this build.");
        QCOMPARE(authFailureOf(google.auth().signIn()), text);
        QVERIFY(google.browser().opened().isEmpty());
        google.setItem("google-drive-refresh-token", QStringLiteral("1//stored"));
        QCOMPARE(authFailureOf(google.auth().validAccessToken()), text);
    }

    void aRefusedExchangeShowsGooglesMessageAfterSignInFailed() {
        GoogleSandboxFixture google(m_sandbox);
        SandboxFault refusal = SandboxFault::answer(QStringLiteral("/google/token"), 400);
        refusal.bodyText = QStringLiteral("{\"error\": \"invalid_grant\", \"error_description\": \"Bad Request\"}");
        QVERIFY(m_sandbox.addFault(refusal));
        QCOMPARE(authFailureOf(google.auth().signIn()), QStringLiteral("Google sign-in failed: Bad Request"));
        QVERIFY(!google.auth().isConnected());
    }

    void aRefusalWithoutGooglesFieldsShowsTheFixedText() {
        GoogleSandboxFixture google(m_sandbox);
        QVERIFY(m_sandbox.addFault(SandboxFault::answer(QStringLiteral("/google/token"), 503)));
        QCOMPARE(authFailureOf(google.auth().signIn()),
                 QStringLiteral("Google sign-in failed: Could not complete Google sign-in."));
    }

    void aLostConnectionPassesOnAsTheNetworksOwnError() {
        GoogleSandboxFixture google(m_sandbox);
        QVERIFY(m_sandbox.addFault(SandboxFault::dropConnection(QStringLiteral("/google/token"))));
        QVERIFY_THROWS_EXCEPTION(StorageTransferError, runTask(google.auth().signIn()));
    }

    void anExpiry61SecondsAheadReturnsTheTokenWithNoRequest() {
        const auto google = signedInAtFixedTime();
        google->setItem("google-drive-access-token-expiry", QString::number(fixedNow.toSecsSinceEpoch() + 61));
        const qsizetype before = tokenRequests(*google);
        QCOMPARE(runTask(google->auth().validAccessToken()), google->item("google-drive-access-token"));
        QCOMPARE(tokenRequests(*google), before);
    }

    void anExpiry60SecondsAheadRefreshes() {
        const auto google = signedInAtFixedTime();
        const QString spent = *google->item("google-drive-access-token");
        const QString refreshToken = *google->item("google-drive-refresh-token");
        google->setItem("google-drive-access-token-expiry", QString::number(fixedNow.toSecsSinceEpoch() + 60));
        const qsizetype before = tokenRequests(*google);

        const QString fresh = runTask(google->auth().validAccessToken());
        QVERIFY(fresh != spent);
        QCOMPARE(tokenRequests(*google), before + 1);
        QCOMPARE(google->item("google-drive-access-token"), fresh);
        QCOMPARE(google->item("google-drive-access-token-expiry"), QString::number(fixedNow.toSecsSinceEpoch() + 3599));
        QCOMPARE(google->item("google-drive-refresh-token"), refreshToken);
        QVERIFY(google->google()[QStringLiteral("accessTokens")].toArray().contains(fresh));
    }

    void anAccessTokenWithNoStoredExpiryIsRefreshed() {
        const auto google = signedInAtFixedTime();
        const QString stored = *google->item("google-drive-access-token");
        runTask(google->credentials().googleAccessTokenExpiryStore.remove());
        QVERIFY(runTask(google->auth().validAccessToken()) != stored);
        QCOMPARE(tokenRequests(*google), 2);
    }

    void aRevokedGrantFailsTheRefreshAndLeavesTheStoredTokens() {
        const auto google = signedInAtFixedTime();
        google->setItem("google-drive-access-token-expiry", QString::number(fixedNow.toSecsSinceEpoch() - 1));
        const auto access = google->item("google-drive-access-token");
        const auto refresh = google->item("google-drive-refresh-token");
        QVERIFY(google->revokeGrants());
        QCOMPARE(authFailureOf(google->auth().validAccessToken()),
                 QStringLiteral("Google sign-in failed: Token has been expired or revoked."));
        QCOMPARE(google->item("google-drive-access-token"), access);
        QCOMPARE(google->item("google-drive-refresh-token"), refresh);
    }

    void aRefreshKeepsTheStoredRefreshTokenWhenTheAnswerBringsANewOne() {
        const auto google = signedInAtFixedTime();
        google->google({{QStringLiteral("rotateRefreshTokens"), true}});
        const auto refresh = google->item("google-drive-refresh-token");
        google->setItem("google-drive-access-token-expiry", QString::number(fixedNow.toSecsSinceEpoch()));
        runTask(google->auth().validAccessToken());
        QCOMPARE(google->google()[QStringLiteral("grants")].toArray().size(), 2);
        QCOMPARE(google->item("google-drive-refresh-token"), refresh);
    }

    void aRefusedRefreshWithoutGooglesFieldsShowsItsFixedText() {
        const auto google = signedInAtFixedTime();
        google->setItem("google-drive-access-token-expiry", QString::number(fixedNow.toSecsSinceEpoch()));
        QVERIFY(m_sandbox.addFault(SandboxFault::answer(QStringLiteral("/google/token"), 500)));
        QCOMPARE(authFailureOf(google->auth().validAccessToken()),
                 QStringLiteral("Google sign-in failed: Could not refresh the Google Drive session."));
    }

    void withoutARefreshTokenTheUserIsNotSignedIn() {
        GoogleSandboxFixture google(m_sandbox);
        QCOMPARE(authFailureOf(google.auth().validAccessToken()),
                 QStringLiteral("Sign in with Google to connect Drive."));
        QCOMPARE(tokenRequests(google), 0);
    }

    void signingOutForgetsTheTokensAndTheConnection() {
        const auto google = signedInAtFixedTime();
        QVERIFY(google->auth().isConnected());
        runTask(google->auth().signOut());
        QVERIFY(!google->auth().isConnected());
        QCOMPARE(google->item("google-drive-access-token"), std::nullopt);
        QCOMPARE(google->item("google-drive-refresh-token"), std::nullopt);
        QCOMPARE(google->item("google-drive-access-token-expiry"), std::nullopt);
    }

    void theConnectionStateFollowsWhatIsStored() {
        GoogleSandboxFixture google(m_sandbox);
        runTask(google.auth().refreshConnectionState());
        QVERIFY(!google.auth().isConnected());
        google.setItem("google-drive-access-token", QStringLiteral("ya29.only-access"));
        runTask(google.auth().refreshConnectionState());
        QVERIFY(google.auth().isConnected());
    }
};

NORVANEBAR_TEST_GUILESS_MAIN(GoogleSignInSandboxTest)
#include "GoogleSignInSandboxTest.moc"
