#include "core/storage/GoogleDriveAuthManager.h"
#include "platform/linux/SchemeHandlerEntry.h"
#include "platform/linux/SecretServiceStore.h"
#include "platform/linux/SingleInstance.h"
#include "support/GoogleSandboxFixture.h"
#include "support/RunTask.h"
#include "support/TestMain.h"

#include <QNetworkReply>
#include <QProcess>
#include <QStandardPaths>
#include <QTest>

namespace {
// The default browser as a person who agrees to sign in uses it: the sign-in page at the sandbox
// sends it on to the program's scheme, and the browser asks the desktop to open that address
// (`gio open`, which starts the handler's Exec line).
class DesktopBrowser : public LinkActions {
public:
    void openURL(const QUrl& url) override {
        QNetworkRequest request(url);
        request.setAttribute(QNetworkRequest::RedirectPolicyAttribute, QNetworkRequest::ManualRedirectPolicy);
        QNetworkReply* reply = m_network.get(request);
        QObject::connect(reply, &QNetworkReply::finished, reply, [this, reply] {
            reply->deleteLater();
            callback = QUrl::fromEncoded(reply->rawHeader(QByteArrayLiteral("Location")));
            m_opener.start(QStringLiteral("gio"), {QStringLiteral("open"), callback.toString(QUrl::FullyEncoded)});
        });
    }
    void copyText(const QString&) override {}

    QUrl callback;
    QProcess& opener() { return m_opener; }

private:
    QNetworkAccessManager m_network;
    QProcess m_opener;
};

// What `secret-tool` finds for the item, as another program would.
QString lookUp(const QString& account) {
    QProcess tool;
    tool.start(QStringLiteral("secret-tool"), {QStringLiteral("lookup"), QStringLiteral("server"),
                                               KeychainStore::appService, QStringLiteral("user"), account});
    tool.waitForFinished(5000);
    return QString::fromUtf8(tool.readAllStandardOutput());
}
} // namespace

// The sign-in's road through the desktop: the program registers its desktop entry as the handler of
// its scheme, the browser's answer starts NorvaneBar itself from that entry, and that launch hands the
// address to the running instance, whose waiting sign-in stores the tokens in the session's Secret
// Service. This test stands for the running instance, wired as the app wires it.
class GoogleSignInHandoverTest : public QObject {
    Q_OBJECT

    SandboxProcess m_sandbox;

private slots:
    void initTestCase() { QVERIFY2(m_sandbox.start(), qPrintable(m_sandbox.errorString())); }

    void theBrowsersAnswerReachesTheRunningInstanceThroughTheDesktopEntry() {
        SecretServiceStore secrets;
        const StorageCredentialStore credentials(&secrets);
        runTask(credentials.clearGoogleTokens());
        SchemeHandlerEntry entry(
            QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation) + QStringLiteral("/applications"),
            QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation) + QStringLiteral("/mimeapps.list"),
            QStringLiteral(NORVANEBAR_BINARY));
        DesktopBrowser browser;
        QNetworkAccessManager network;
        GoogleDriveAuthManager auth({.credentials = credentials,
                                     .session = &network,
                                     .addresses = GoogleSandboxFixture::addresses(m_sandbox),
                                     .clientID = QString::fromLatin1(GoogleSandboxFixture::clientID),
                                     .browser = &browser,
                                     .scheme = &entry});
        SingleInstance instance;
        QVERIFY(instance.listen());
        QList<QUrl> handedOver;
        connect(&instance, &SingleInstance::messageReceived, &auth, [&](const InstanceMessage& message) {
            QVERIFY(message.callbackURL);
            handedOver.append(*message.callbackURL);
            auth.handleCallback(*message.callbackURL);
        });

        runTask(auth.signIn(), std::chrono::seconds(60));

        QCOMPARE(handedOver, QList<QUrl>{browser.callback});
        QTRY_COMPARE_WITH_TIMEOUT(browser.opener().state(), QProcess::NotRunning, 10'000);
        QCOMPARE(browser.opener().exitStatus(), QProcess::NormalExit);
        QCOMPARE(browser.opener().exitCode(), 0);
        QVERIFY(auth.isConnected());
        GoogleSandboxFixture google(m_sandbox);
        const QJsonObject state = google.google();
        QCOMPARE(lookUp(QStringLiteral("google-drive-refresh-token")),
                 state[QStringLiteral("grants")][0][QStringLiteral("refreshToken")].toString());
        QVERIFY(state[QStringLiteral("accessTokens")].toArray().contains(
            lookUp(QStringLiteral("google-drive-access-token"))));
    }
};

NORVANEBAR_TEST_GUILESS_MAIN(GoogleSignInHandoverTest)
#include "GoogleSignInHandoverTest.moc"
