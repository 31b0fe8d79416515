#include "core/storage/GoogleAddresses.h"
#include "core/storage/GoogleDriveProvider.h"
#include "support/TestMain.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QTest>

class GoogleAddressesTest : public QObject {
    Q_OBJECT

private slots:
    void googlesOwnHostsStandUnlessTheSettingsNameOthers() {
        const GoogleAddresses addresses = GoogleAddresses::from(AppSettings());
        QCOMPARE(addresses.authorizationURL(), QUrl(QStringLiteral("https://accounts.google.com/o/oauth2/v2/auth")));
        QCOMPARE(addresses.tokenURL(), QUrl(QStringLiteral("https://oauth2.googleapis.com/token")));
        QCOMPARE(addresses.uploadURL(),
                 QUrl(QStringLiteral(
                     "https://www.googleapis.com/upload/drive/v3/files?uploadType=multipart&fields=id,webViewLink")));
        QCOMPARE(addresses.permissionsURL(QStringLiteral("F1")),
                 QUrl(QStringLiteral("https://www.googleapis.com/drive/v3/files/F1/permissions")));
        QCOMPARE(addresses.fileViewURL(QStringLiteral("F1")),
                 QUrl(QStringLiteral("https://drive.google.com/file/d/F1/view")));
    }

    void eachHostCanBeReplacedWithALeadingPath() {
        AppSettings settings;
        settings.googleAccountsBaseURL = QStringLiteral("http://127.0.0.1:9/google/");
        settings.googleOAuthTokenBaseURL = QStringLiteral("http://127.0.0.1:9/google");
        settings.googleDriveAPIBaseURL = QStringLiteral("http://127.0.0.1:8/api");
        settings.googleDriveUploadBaseURL = QStringLiteral("http://127.0.0.1:7");
        settings.googleDriveWebBaseURL = QStringLiteral("http://127.0.0.1:6/web");
        const GoogleAddresses addresses = GoogleAddresses::from(settings);
        QCOMPARE(addresses.authorizationURL(), QUrl(QStringLiteral("http://127.0.0.1:9/google/o/oauth2/v2/auth")));
        QCOMPARE(addresses.tokenURL(), QUrl(QStringLiteral("http://127.0.0.1:9/google/token")));
        QCOMPARE(addresses.permissionsURL(QStringLiteral("F")),
                 QUrl(QStringLiteral("http://127.0.0.1:8/api/drive/v3/files/F/permissions")));
        QCOMPARE(addresses.uploadURL().path(), QStringLiteral("/upload/drive/v3/files"));
        QCOMPARE(addresses.fileViewURL(QStringLiteral("F")),
                 QUrl(QStringLiteral("http://127.0.0.1:6/web/file/d/F/view")));
    }

    void theOverridesAreLeftOutOfTheSettingsFileWhenAbsentAndReadBackWhenSet() {
        const QJsonObject defaults = AppSettings().toJson();
        for (const char* key : {"googleAccountsBaseURL", "googleOAuthTokenBaseURL", "googleDriveAPIBaseURL",
                                "googleDriveUploadBaseURL", "googleDriveWebBaseURL"}) {
            QVERIFY2(!defaults.contains(QLatin1String(key)), key);
        }
        AppSettings settings;
        settings.googleDriveWebBaseURL = QStringLiteral("http://127.0.0.1:6");
        const AppSettings read = AppSettings::fromJson(Json::JsonObject::from(settings.toJson()));
        QCOMPARE(read.googleDriveWebBaseURL, settings.googleDriveWebBaseURL);
        QCOMPARE(read.googleAccountsBaseURL, std::nullopt);
    }

    void anEmptyFolderIDLeavesParentsOutOfTheMetadataAltogether() {
        const QJsonObject root =
            QJsonDocument::fromJson(GoogleDriveProvider::metadata(QStringLiteral("a.png"), {})).object();
        QCOMPARE(root, (QJsonObject{{QStringLiteral("name"), QStringLiteral("a.png")}}));
        const QJsonObject inFolder =
            QJsonDocument::fromJson(GoogleDriveProvider::metadata(QStringLiteral("a.png"), QStringLiteral("F9")))
                .object();
        QCOMPARE(inFolder.value(QStringLiteral("parents")).toArray(), QJsonArray{QStringLiteral("F9")});
    }
};

NORVANEBAR_TEST_APPLESS_MAIN(GoogleAddressesTest)
#include "GoogleAddressesTest.moc"
