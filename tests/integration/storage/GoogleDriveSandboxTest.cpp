#include "core/storage/GoogleDriveProvider.h"
#include "core/storage/StorageProviderError.h"
#include "support/AppStateFixture.h"
#include "support/GoogleSandboxFixture.h"
#include "support/RunTask.h"
#include "support/SandboxFault.h"
#include "support/StorageTesting.h"
#include "support/TestMain.h"

#include <QCryptographicHash>
#include <QFile>
#include <QTemporaryDir>
#include <QTest>
#include <QUrlQuery>

namespace {
// The text of the StorageProviderError the upload throws, or a note that it threw none.
QString providerFailureOf(QCoro::Task<QUrl> task) {
    try {
        runTask(std::move(task));
    } catch (const StorageProviderError& error) {
        return error.errorDescription();
    }
    return QStringLiteral("(no StorageProviderError)");
}

QString sha256(const QByteArray& bytes) {
    return QString::fromLatin1(QCryptographicHash::hash(bytes, QCryptographicHash::Sha256).toHex());
}

QString driveError(const QString& message) {
    return QStringLiteral("{\"error\": {\"code\": 403, \"message\": \"%1\", \"status\": \"PERMISSION_DENIED\"}}")
        .arg(message);
}
} // namespace

class GoogleDriveSandboxTest : public QObject {
    Q_OBJECT

    SandboxProcess m_sandbox;
    QTemporaryDir m_folder;

    // A file of random bytes in the test's folder.
    QUrl fileOf(const QString& name, qsizetype size, QByteArray* bytes = nullptr) {
        const QByteArray content = StorageTesting::randomBytes(size);
        QFile file(m_folder.filePath(name));
        if (!file.open(QIODevice::WriteOnly) || file.write(content) != size) {
            qFatal("cannot write %s", qPrintable(file.fileName()));
        }
        if (bytes) {
            *bytes = content;
        }
        return QUrl::fromLocalFile(file.fileName());
    }

    GoogleDriveProvider providerOf(GoogleSandboxFixture& google, const QString& folderID) {
        return {folderID, google.auth(), google.network(), GoogleSandboxFixture::addresses(m_sandbox)};
    }

    QJsonObject onlyFile(GoogleSandboxFixture& google) {
        const QJsonArray files = google.google()[QStringLiteral("files")].toArray();
        return files.size() == 1 ? files.first().toObject() : QJsonObject();
    }

private slots:
    void initTestCase() { QVERIFY2(m_sandbox.start(), qPrintable(m_sandbox.errorString())); }

    void init() { QVERIFY(GoogleSandboxFixture::startAfresh(m_sandbox)); }

    void aFileArrivesWholeInItsFolderSharedWithAnyoneWithTheLink() {
        GoogleSandboxFixture google(m_sandbox);
        runTask(google.auth().signIn());
        const qint64 since = m_sandbox.requests().last()[QStringLiteral("seq")].toInteger();
        QByteArray bytes;
        const QUrl link = runTask(
            providerOf(google, QStringLiteral("F9"))
                .upload(fileOf(QStringLiteral("shot.png"), 300'000, &bytes), QStringLiteral("Screen shot.png")));
        const QJsonObject file = onlyFile(google);
        QCOMPARE(file[QStringLiteral("name")].toString(), QStringLiteral("Screen shot.png"));
        QCOMPARE(file[QStringLiteral("parents")].toArray(), QJsonArray{QStringLiteral("F9")});
        QCOMPARE(file[QStringLiteral("sha256")].toString(), sha256(bytes));
        QVERIFY(file[QStringLiteral("shared")].toBool());
        QCOMPARE(link,
                 m_sandbox.webUrl(QStringLiteral("/google/file/d/%1/view").arg(file[QStringLiteral("id")].toString()))
                     .resolved(QUrl(QStringLiteral("?usp=drivesdk"))));

        // One token served both requests; the upload asked for the id and the link only.
        const QString bearer = QStringLiteral("Bearer ") + *google.item("google-drive-access-token");
        const QJsonArray uploads = google.requestsTo(QStringLiteral("/google/upload/drive/v3/files"), since);
        const QJsonArray shares = google.requestsTo(
            QStringLiteral("/google/drive/v3/files/%1/permissions").arg(file[QStringLiteral("id")].toString()), since);
        QCOMPARE(uploads.size(), 1);
        QCOMPARE(shares.size(), 1);
        for (const QJsonValue request : {uploads[0], shares[0]}) {
            bool authorized = false;
            for (const QJsonValue header : request[QStringLiteral("headers")].toArray()) {
                authorized |= header[0].toString().compare(QStringLiteral("Authorization"), Qt::CaseInsensitive) == 0 &&
                              header[1].toString() == bearer;
            }
            QVERIFY(authorized);
        }
        QCOMPARE(uploads[0][QStringLiteral("query")].toArray(),
                 (QJsonArray{QJsonArray{QStringLiteral("uploadType"), QStringLiteral("multipart")},
                             QJsonArray{QStringLiteral("fields"), QStringLiteral("id,webViewLink")}}));

        // The link's page shows the file, and Drive gives back its bytes.
        SyncHttpClient client;
        QCOMPARE(client.get(link).status, 200);
        QUrl content =
            m_sandbox.webUrl(QStringLiteral("/google/drive/v3/files/") + file[QStringLiteral("id")].toString());
        content.setQuery(QStringLiteral("alt=media"));
        QCOMPARE(client.send("GET", content, {{"Authorization", bearer.toUtf8()}}).body, bytes);
    }

    void anEmptyFolderIDLeavesParentsOutOfTheUpload() {
        GoogleSandboxFixture google(m_sandbox);
        runTask(google.auth().signIn());
        runTask(providerOf(google, {}).upload(fileOf(QStringLiteral("a.txt"), 10), QStringLiteral("a.txt")));
        // The sandbox refuses metadata with parents that hold no folder; here it kept none.
        QCOMPARE(onlyFile(google)[QStringLiteral("parents")].toArray(), QJsonArray());
    }

    void aStoredRefreshTokenWithNoAccessTokenPassesValidation() {
        GoogleSandboxFixture google(m_sandbox);
        runTask(google.auth().signIn());
        runTask(google.credentials().googleAccessTokenStore.remove());
        runTask(google.credentials().googleAccessTokenExpiryStore.remove());
        runTask(google.auth().refreshConnectionState());
        const GoogleDriveProvider provider = providerOf(google, {});
        provider.validateConfiguration();
        runTask(provider.upload(fileOf(QStringLiteral("b.txt"), 10), QStringLiteral("b.txt")));
        QVERIFY(onlyFile(google)[QStringLiteral("shared")].toBool());
    }

    void withNothingStoredValidationAndUploadAskToSignIn() {
        GoogleSandboxFixture google(m_sandbox);
        const GoogleDriveProvider provider = providerOf(google, {});
        QCOMPARE(provider.displayName(), QStringLiteral("Google Drive"));
        try {
            provider.validateConfiguration();
            QFAIL("validation passed");
        } catch (const StorageProviderError& error) {
            QVERIFY(error.is<StorageProviderError::MissingConfiguration>());
            QCOMPARE(error.errorDescription(), QStringLiteral("Sign in with Google to connect Drive."));
        }
        QCOMPARE(providerFailureOf(provider.upload(fileOf(QStringLiteral("c.txt"), 10), QStringLiteral("c.txt"))),
                 QStringLiteral("Sign in with Google to connect Drive."));
        QVERIFY(google.requestsTo(QStringLiteral("/google/upload/drive/v3/files")).isEmpty());
    }

    void aFileAnswerWithoutWebViewLinkYieldsTheFallbackLink() {
        GoogleSandboxFixture google(m_sandbox);
        runTask(google.auth().signIn());
        google.google({{QStringLiteral("webViewLink"), false}});
        const QUrl link =
            runTask(providerOf(google, {}).upload(fileOf(QStringLiteral("d.txt"), 10), QStringLiteral("d.txt")));
        QCOMPARE(link,
                 m_sandbox.webUrl(
                     QStringLiteral("/google/file/d/%1/view").arg(onlyFile(google)[QStringLiteral("id")].toString())));
    }

    void aPermissionFailureAfterASuccessfulUploadSurfacesTheServicesMessage() {
        GoogleSandboxFixture google(m_sandbox);
        runTask(google.auth().signIn());
        SandboxFault refusal = SandboxFault::answer(QStringLiteral("/google/drive/v3/files/*/permissions"), 403);
        refusal.bodyText = driveError(QStringLiteral("The user does not have sufficient permissions for this file."));
        QVERIFY(m_sandbox.addFault(refusal));
        QCOMPARE(providerFailureOf(
                     providerOf(google, {}).upload(fileOf(QStringLiteral("e.txt"), 10), QStringLiteral("e.txt"))),
                 QStringLiteral("The user does not have sufficient permissions for this file."));
        // The file stays in Drive, private.
        QVERIFY(!onlyFile(google).isEmpty());
        QVERIFY(!onlyFile(google)[QStringLiteral("shared")].toBool());
    }

    void aPermissionFailureWithoutAMessageSurfacesTheFixedText() {
        GoogleSandboxFixture google(m_sandbox);
        runTask(google.auth().signIn());
        SandboxFault refusal = SandboxFault::answer(QStringLiteral("/google/drive/v3/files/*/permissions"), 500);
        refusal.bodyText = QStringLiteral("{\"error\": {\"code\": 500}}");
        QVERIFY(m_sandbox.addFault(refusal));
        QCOMPARE(providerFailureOf(
                     providerOf(google, {}).upload(fileOf(QStringLiteral("f.txt"), 10), QStringLiteral("f.txt"))),
                 QStringLiteral("Could not make the file viewable."));
    }

    void aJsonErrorObjectWithoutAMessageFallsThroughToTheFixedText() {
        GoogleSandboxFixture google(m_sandbox);
        runTask(google.auth().signIn());
        SandboxFault refusal = SandboxFault::answer(QStringLiteral("/google/upload/drive/v3/files"), 503);
        refusal.bodyText = QStringLiteral("{\"error\": {\"code\": 503, \"status\": \"UNAVAILABLE\"}}");
        QVERIFY(m_sandbox.addFault(refusal));
        QCOMPARE(providerFailureOf(
                     providerOf(google, {}).upload(fileOf(QStringLiteral("g.txt"), 10), QStringLiteral("g.txt"))),
                 QStringLiteral("Google Drive upload failed."));
        QVERIFY(google.google()[QStringLiteral("files")].toArray().isEmpty());
    }

    void aTokenDriveRefusesIsNotTriedAgain() {
        GoogleSandboxFixture google(m_sandbox);
        runTask(google.auth().signIn());
        QVERIFY(google.revokeGrants());
        QCOMPARE(providerFailureOf(
                     providerOf(google, {}).upload(fileOf(QStringLiteral("h.txt"), 10), QStringLiteral("h.txt"))),
                 QStringLiteral("Request had invalid authentication credentials. Expected OAuth 2 access token, login "
                                "cookie or other valid authentication credential."));
        QCOMPARE(google.requestsTo(QStringLiteral("/google/upload/drive/v3/files")).size(), 1);
    }

    void theCentralStateMakesTheDriveProviderFromTheSettings() {
        AppStateFixture fixture(&m_sandbox);
        const QString base = m_sandbox.webUrl(u"/google").toString();
        fixture.writeSettings({{QStringLiteral("storageProvider"), QStringLiteral("googleDrive")},
                               {QStringLiteral("googleDriveFolderID"), QStringLiteral("  F7  ")},
                               {QStringLiteral("googleAccountsBaseURL"), base},
                               {QStringLiteral("googleOAuthTokenBaseURL"), base},
                               {QStringLiteral("googleDriveAPIBaseURL"), base},
                               {QStringLiteral("googleDriveUploadBaseURL"), base},
                               {QStringLiteral("googleDriveWebBaseURL"), base}});
        // Tokens the sandbox issued, stored where the central state keeps them.
        GoogleSandboxFixture google(m_sandbox);
        runTask(google.auth().signIn());
        for (const char* account :
             {"google-drive-access-token", "google-drive-refresh-token", "google-drive-access-token-expiry"}) {
            fixture.memorySecrets().setItem(KeychainStore::appService, QLatin1String(account),
                                            google.item(account)->toUtf8());
        }
        AppState& app = fixture.start();
        QTRY_VERIFY(app.googleDriveAuth().isConnected());
        const auto provider = runTask(app.storageProviders().makeProvider(app.settings().settings()));
        QVERIFY(dynamic_cast<const GoogleDriveProvider*>(provider.get()));
        provider->validateConfiguration();
        runTask(provider->upload(fileOf(QStringLiteral("i.txt"), 10), QStringLiteral("i.txt")));
        QCOMPARE(onlyFile(google)[QStringLiteral("parents")].toArray(), QJsonArray{QStringLiteral("F7")});
    }
};

NORVANEBAR_TEST_GUILESS_MAIN(GoogleDriveSandboxTest)
#include "GoogleDriveSandboxTest.moc"
