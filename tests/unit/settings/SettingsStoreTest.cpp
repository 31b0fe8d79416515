#include "core/settings/SettingsStore.h"
#include "support/TestMain.h"

#include "core/json/JsonDecoding.h"

#include <QFile>
#include <QJsonDocument>
#include <QSignalSpy>
#include <QStandardPaths>
#include <QTemporaryDir>
#include <QTest>

namespace {
// Settings that differ from the defaults in every field, the same at each call.
AppSettings everyFieldSet() {
    const QUuid templateID(QStringLiteral("{9b2f61a4-1c7d-4e0b-8a55-2d6c0f3e7b11}"));
    AppSettings settings;
    settings.visibleDefaultFields = {DefaultField::priority, DefaultField::tags};
    settings.hiddenCustomFieldIDs = {QStringLiteral("cf-1"), QStringLiteral("cf-2")};
    settings.defaultReminderLeadMinutes = 30;
    settings.bookmarks = {Bookmark{QUuid(QStringLiteral("{0e4d1f6c-52f5-4a8e-9c61-3b1a2f7c9d10}")),
                                   QStringLiteral("Docs"), QStringLiteral("https://docs.example")}};
    settings.preferredWorkspaceID = QStringLiteral("w-9");
    settings.lastLocation = SavedLocation{QStringLiteral("w-9"), QStringLiteral("l-1"), QStringLiteral("Inbox"),
                                          QStringLiteral("Team › Sprint 4")};
    settings.hotKeyPreset = HotKeyPreset::optionShiftN;
    TaskTemplate bug;
    bug.id = templateID;
    bug.name = QStringLiteral("Bug");
    bug.priority = 1;
    bug.custom = {{QStringLiteral("cf-1"), CustomValue::number(QStringLiteral("3"))}};
    TaskTemplate recording;
    recording.id = QUuid(QStringLiteral("{5c0e2a77-8d3b-4f61-b2a9-7e14c6d0f852}"));
    recording.name = QStringLiteral("Screen recording");
    settings.templates = {bug, recording};
    settings.screenshotHotKeyPreset = HotKeyPreset::controlShiftSpace;
    settings.screenshotTemplateID = bug.id;
    settings.screenRecordingHotKeyPreset = HotKeyPreset::commandShiftSpace;
    settings.screenRecordingTemplateID = recording.id;
    settings.recordingQuality = RecordingQuality::hd1080;
    settings.recordingCaptureMicrophone = false;
    settings.recordingShowCursor = false;
    settings.recordingIncludeFacecam = true;
    settings.recordingFacecamStyle.corner = FacecamCorner::topRight;
    settings.recordingFacecamStyle.customImagePath = QStringLiteral("/tmp/bg.png");
    settings.recordingMaxDurationMinutes = 45;
    settings.showDueCountBadge = true;
    settings.storageProvider = StorageProviderKind::cloudflareR2;
    settings.cloudinaryCloudName = QStringLiteral("cloud");
    settings.cloudinaryUploadPreset = QStringLiteral("preset");
    settings.cloudflareR2AccountID = QStringLiteral("account");
    settings.cloudflareR2Bucket = QStringLiteral("bucket");
    settings.cloudflareR2PublicURLBase = QStringLiteral("https://pub.example");
    settings.googleDriveFolderID = QStringLiteral("folder");
    settings.accounts = {
        StoredAccount{42, QStringLiteral("Ada"), QStringLiteral("ada@example.com"), std::nullopt, QStringLiteral("A")}};
    settings.activeAccountID = 42;
    settings.accountLocations = {{QStringLiteral("42"), *settings.lastLocation}};
    settings.accountPreferredWorkspaceIDs = {{QStringLiteral("42"), QStringLiteral("w-9")}};
    settings.branchNameFormat = QStringLiteral(":taskId:");
    settings.serviceAPIBaseURL = QStringLiteral("http://127.0.0.1:8080/api/v2");
    settings.serviceWebBaseURL = QStringLiteral("http://127.0.0.1:8080");
    settings.cloudflareR2EndpointBaseURL = QStringLiteral("http://127.0.0.9");
    return settings;
}

// What a version of NorvaneBar from before several accounts wrote.
const QByteArray olderVersionFile = R"({
    "bookmarks": [{"id": "0E4D1F6C-52F5-4A8E-9C61-3B1A2F7C9D10", "name": "Roadmap", "urlString": "https:\/\/roadmap.example"}],
    "cloudflareR2AccountID": "",
    "cloudflareR2Bucket": "",
    "cloudflareR2PublicURLBase": "",
    "cloudinaryCloudName": "",
    "cloudinaryUploadPreset": "",
    "googleDriveFolderID": "",
    "hiddenCustomFieldIDs": ["cf-7"],
    "hotKeyPreset": "controlShiftSpace",
    "lastLocation": {"workspaceID": "w1", "listID": "l1", "listName": "Inbox", "pathDescription": "Ops"},
    "preferredWorkspaceID": "w1",
    "recordingCaptureMicrophone": false,
    "recordingFacecamStyle": {"backgroundKind": "blur", "blurRadius": 20, "corner": "bottomLeft",
                              "cornerRadius": 0, "isVisible": true, "sizeFraction": 0.18},
    "recordingIncludeFacecam": true,
    "recordingMaxDurationMinutes": 30,
    "recordingQuality": "hd1080",
    "recordingShowCursor": true,
    "screenRecordingHotKeyPreset": "disabled",
    "screenshotHotKeyPreset": "optionShiftN",
    "showDueCountBadge": true,
    "storageProvider": "cloudinary",
    "templates": [],
    "visibleDefaultFields": ["tags", "status"]
})";

// The keys written for fresh settings: all but the optional ones.
const QStringList alwaysWrittenKeys{
    "accountLocations",
    "accountPreferredWorkspaceIDs",
    "accounts",
    "bookmarks",
    "branchNameFormat",
    "cloudflareR2AccountID",
    "cloudflareR2Bucket",
    "cloudflareR2PublicURLBase",
    "cloudinaryCloudName",
    "cloudinaryUploadPreset",
    "defaultReminderLeadMinutes",
    "googleDriveFolderID",
    "hiddenCustomFieldIDs",
    "hotKeyPreset",
    "recordingCaptureMicrophone",
    "recordingFacecamStyle",
    "recordingIncludeFacecam",
    "recordingMaxDurationMinutes",
    "recordingQuality",
    "recordingShowCursor",
    "screenRecordingHotKeyPreset",
    "screenshotHotKeyPreset",
    "showDueCountBadge",
    "storageProvider",
    "templates",
    "visibleDefaultFields",
};
} // namespace

class SettingsStoreTest : public QObject {
    Q_OBJECT

    QTemporaryDir m_folder;

    QString path() const { return m_folder.filePath(QStringLiteral("NorvaneBar/settings.json")); }

    void writeFile(const QByteArray& bytes) const {
        QDir().mkpath(m_folder.filePath(QStringLiteral("NorvaneBar")));
        QFile file(path());
        QVERIFY(file.open(QIODevice::WriteOnly | QIODevice::Truncate));
        file.write(bytes);
    }

    QByteArray fileBytes() const {
        QFile file(path());
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    }

    // Settings read from a file holding bytes.
    AppSettings readFrom(const QByteArray& bytes) const {
        writeFile(bytes);
        return SettingsStore(path()).settings();
    }

    // The older file with one key replaced.
    AppSettings olderFileWith(const QString& key, const QJsonValue& value) const {
        QJsonObject object = Json::parse(olderVersionFile).toObject();
        object.insert(key, value);
        return readFrom(QJsonDocument(object).toJson());
    }

private slots:
    // The store's own default file lands in the test's folder, never in the user's.
    void initTestCase() { qputenv("XDG_CONFIG_HOME", m_folder.filePath(QStringLiteral("config")).toUtf8()); }

    void init() { QFile::remove(path()); }

    void noFileAtAllGivesTheDefaults() {
        const SettingsStore store(path());
        QCOMPARE(store.settings(), AppSettings());
        QCOMPARE(store.settings().visibleDefaultFields,
                 QSet<DefaultField>({DefaultField::status, DefaultField::assignee, DefaultField::dueDate}));
        QVERIFY(!store.settings().visibleDefaultFields.contains(DefaultField::priority));
        QVERIFY(!store.settings().visibleDefaultFields.contains(DefaultField::tags));
        QVERIFY2(!QFile::exists(path()), "creation does not write the file");
    }

    void freshSettingsHoldEveryDefault() {
        const AppSettings settings;
        QVERIFY(settings.hiddenCustomFieldIDs.isEmpty());
        QCOMPARE(settings.defaultReminderLeadMinutes, 15);
        QVERIFY(settings.bookmarks.isEmpty());
        QCOMPARE(settings.preferredWorkspaceID, std::nullopt);
        QCOMPARE(settings.lastLocation, std::nullopt);
        QCOMPARE(settings.hotKeyPreset, HotKeyPreset::optionShiftSpace);
        QVERIFY(settings.templates.isEmpty());
        QCOMPARE(settings.screenshotHotKeyPreset, HotKeyPreset::disabled);
        QCOMPARE(settings.screenshotTemplateID, std::nullopt);
        QCOMPARE(settings.screenRecordingHotKeyPreset, HotKeyPreset::disabled);
        QCOMPARE(settings.screenRecordingTemplateID, std::nullopt);
        QCOMPARE(settings.recordingQuality, RecordingQuality::hd720);
        QVERIFY(settings.recordingCaptureMicrophone);
        QVERIFY(settings.recordingShowCursor);
        QVERIFY(!settings.recordingIncludeFacecam);
        QCOMPARE(settings.recordingFacecamStyle, FacecamStyle());
        QCOMPARE(settings.recordingMaxDurationMinutes, 15);
        QVERIFY(!settings.showDueCountBadge);
        QCOMPARE(settings.storageProvider, StorageProviderKind::norvane);
        for (const QString* text :
             {&settings.cloudinaryCloudName, &settings.cloudinaryUploadPreset, &settings.cloudflareR2AccountID,
              &settings.cloudflareR2Bucket, &settings.cloudflareR2PublicURLBase, &settings.googleDriveFolderID}) {
            QCOMPARE(*text, QString());
        }
        QVERIFY(settings.accounts.isEmpty());
        QCOMPARE(settings.activeAccountID, std::nullopt);
        QVERIFY(settings.accountLocations.isEmpty());
        QVERIFY(settings.accountPreferredWorkspaceIDs.isEmpty());
        QCOMPARE(settings.branchNameFormat, QStringLiteral(":taskId:_:taskName:_:username:"));
        QCOMPARE(settings.serviceAPIBaseURL, std::nullopt);
        QCOMPARE(settings.serviceWebBaseURL, std::nullopt);
        QCOMPARE(settings.cloudflareR2EndpointBaseURL, std::nullopt);
    }

    void aFileFromAnOlderVersionKeepsItsSettingsAndTheAccountKeysTakeTheirDefaults() {
        const AppSettings settings = readFrom(olderVersionFile);
        QCOMPARE(settings.hotKeyPreset, HotKeyPreset::controlShiftSpace);
        QCOMPARE(settings.storageProvider, StorageProviderKind::cloudinary);
        QCOMPARE(settings.visibleDefaultFields, QSet<DefaultField>({DefaultField::tags, DefaultField::status}));
        QCOMPARE(settings.bookmarks.size(), 1);
        QCOMPARE(settings.bookmarks.front().id, QUuid(QStringLiteral("0e4d1f6c-52f5-4a8e-9c61-3b1a2f7c9d10")));
        QCOMPARE(settings.lastLocation->listName, QStringLiteral("Inbox"));
        QCOMPARE(settings.recordingFacecamStyle.corner, FacecamCorner::bottomLeft);
        QCOMPARE(settings.recordingMaxDurationMinutes, 30);
        QVERIFY(settings.showDueCountBadge);
        QVERIFY(settings.accounts.isEmpty());
        QCOMPARE(settings.activeAccountID, std::nullopt);
        QVERIFY(settings.accountLocations.isEmpty());
        QVERIFY(settings.accountPreferredWorkspaceIDs.isEmpty());
        QCOMPARE(settings.branchNameFormat, AppSettings().branchNameFormat);
        QCOMPARE(settings.defaultReminderLeadMinutes, 15);
    }

    void anUnknownStorageProviderIgnoresTheWholeFile() {
        QCOMPARE(olderFileWith(QStringLiteral("storageProvider"), QStringLiteral("dropbox")), AppSettings());
    }

    void anUnknownHotKeyPresetIgnoresTheWholeFile() {
        QCOMPARE(olderFileWith(QStringLiteral("hotKeyPreset"), QStringLiteral("hyperShiftSpace")), AppSettings());
        QCOMPARE(olderFileWith(QStringLiteral("screenshotHotKeyPreset"), QStringLiteral("Disabled")), AppSettings());
    }

    void aStoredFacecamStyleWithAWrongTypeIgnoresTheWholeFile() {
        QCOMPARE(olderFileWith(QStringLiteral("recordingFacecamStyle"), QStringLiteral("circle")), AppSettings());
        QJsonObject style =
            Json::parse(olderVersionFile).toObject().value(QStringLiteral("recordingFacecamStyle")).toObject();
        style.insert(QStringLiteral("cornerRadius"), QStringLiteral("round"));
        QCOMPARE(olderFileWith(QStringLiteral("recordingFacecamStyle"), style), AppSettings());
    }

    void aDamagedFileStaysOnDiskUntilTheNextChange() {
        const QByteArray damaged = R"({"storageProvider": "dropbox"})";
        writeFile(damaged);
        SettingsStore store(path());
        QCOMPARE(store.settings(), AppSettings());
        QCOMPARE(fileBytes(), damaged);
        store.set(&AppSettings::showDueCountBadge, true);
        QCOMPARE(SettingsStore(path()).settings().storageProvider, StorageProviderKind::norvane);
        QVERIFY(SettingsStore(path()).settings().showDueCountBadge);
    }

    void anEmptyFileGivesDefaultsAndTheNextChangeReplacesIt() {
        writeFile(QByteArray());
        SettingsStore store(path());
        QCOMPARE(store.settings(), AppSettings());
        store.set(&AppSettings::defaultReminderLeadMinutes, 5);
        QCOMPARE(SettingsStore(path()).settings().defaultReminderLeadMinutes, 5);
    }

    void aCutOffFileGivesDefaultsAndTheNextChangeReplacesIt() {
        const QByteArray whole = QJsonDocument(everyFieldSet().toJson()).toJson();
        writeFile(whole.left(whole.size() / 2));
        SettingsStore store(path());
        QCOMPARE(store.settings(), AppSettings());
        store.set(&AppSettings::branchNameFormat, QStringLiteral(":taskName:"));
        AppSettings expected;
        expected.branchNameFormat = QStringLiteral(":taskName:");
        QCOMPARE(SettingsStore(path()).settings(), expected);
    }

    void aReminderLeadOfZeroStaysZero() {
        QCOMPARE(olderFileWith(QStringLiteral("defaultReminderLeadMinutes"), 0).defaultReminderLeadMinutes, 0);
    }

    void onlyAMissingOrNullReminderLeadGives15() {
        QCOMPARE(readFrom(olderVersionFile).defaultReminderLeadMinutes, 15);
        QCOMPARE(
            olderFileWith(QStringLiteral("defaultReminderLeadMinutes"), QJsonValue::Null).defaultReminderLeadMinutes,
            15);
    }

    void aNullBranchNameFormatGivesTheDefaultFormat() {
        QCOMPARE(olderFileWith(QStringLiteral("branchNameFormat"), QJsonValue::Null).branchNameFormat,
                 QStringLiteral(":taskId:_:taskName:_:username:"));
    }

    void anEmptyBranchNameFormatStaysEmpty() {
        QCOMPARE(olderFileWith(QStringLiteral("branchNameFormat"), QString()).branchNameFormat, QString());
    }

    void aPresentKeyOfTheWrongTypeIgnoresTheWholeFile() {
        QCOMPARE(olderFileWith(QStringLiteral("showDueCountBadge"), QStringLiteral("yes")), AppSettings());
        QCOMPARE(olderFileWith(QStringLiteral("defaultReminderLeadMinutes"), 7.5), AppSettings());
        QCOMPARE(olderFileWith(QStringLiteral("visibleDefaultFields"), QStringLiteral("status")), AppSettings());
        QCOMPARE(olderFileWith(QStringLiteral("screenshotTemplateID"), QStringLiteral("first")), AppSettings());
        QCOMPARE(olderFileWith(QStringLiteral("accountLocations"), QJsonArray()), AppSettings());
    }

    void anArrayElementLackingARequiredKeyIgnoresTheWholeFile() {
        QCOMPARE(olderFileWith(QStringLiteral("bookmarks"), QJsonArray{QJsonObject{{"name", "x"}, {"urlString", "y"}}}),
                 AppSettings());
        QCOMPARE(olderFileWith(QStringLiteral("accounts"), QJsonArray{QJsonObject{{"displayName", "Ada"}}}),
                 AppSettings());
        QCOMPARE(olderFileWith(QStringLiteral("templates"),
                               QJsonArray{QJsonObject{{"custom", QJsonObject{{"f", QJsonObject()}}}}}),
                 AppSettings());
    }

    void aFileThatIsNoObjectGivesDefaults() {
        QCOMPARE(readFrom("[]"), AppSettings());
        QCOMPARE(readFrom("\xff\xfe{"), AppSettings());
    }

    void unknownKeysAreIgnored() {
        QCOMPARE(olderFileWith(QStringLiteral("futureSetting"), QJsonObject{{"x", 1}}).storageProvider,
                 StorageProviderKind::cloudinary);
    }

    void everyFieldComesBackAsItWasSaved() {
        SettingsStore(path()).setSettings(everyFieldSet());
        QCOMPARE(SettingsStore(path()).settings(), everyFieldSet());
    }

    void theFileIsPrettyPrintedUtf8WithSortedKeys() {
        SettingsStore(path()).setSettings(everyFieldSet());
        const QByteArray bytes = fileBytes();
        QVERIFY(bytes.startsWith("{\n    \"accountLocations\": {\n        \"42\": {"));
        QVERIFY(bytes.contains(QStringLiteral("Team › Sprint 4").toUtf8()));
        QStringList keys;
        for (const QByteArray& line : bytes.split('\n')) {
            if (line.startsWith("    \"")) {
                keys.append(QString::fromUtf8(line.mid(5, line.indexOf('"', 5) - 5)));
            }
        }
        QStringList sorted = keys;
        sorted.sort();
        QCOMPARE(keys, sorted);
        QCOMPARE(keys.size(), alwaysWrittenKeys.size() + 8);
    }

    void absentOptionalFieldsAreLeftOutAndAllOthersAreWritten() {
        SettingsStore(path()).setSettings(AppSettings());
        QStringList keys = Json::parse(fileBytes()).toObject().keys();
        QCOMPARE(keys, alwaysWrittenKeys);
    }

    void theServiceAddressesOverrideOnlyWhenSet() {
        AppSettings settings;
        settings.serviceAPIBaseURL = QStringLiteral("http://127.0.0.1:5000/api/v2");
        SettingsStore(path()).setSettings(settings);
        const QJsonObject written = Json::parse(fileBytes()).toObject();
        QCOMPARE(written.value(QStringLiteral("serviceAPIBaseURL")).toString(),
                 QStringLiteral("http://127.0.0.1:5000/api/v2"));
        QVERIFY(!written.contains(QStringLiteral("serviceWebBaseURL")));
        QVERIFY(!written.contains(QStringLiteral("cloudflareR2EndpointBaseURL")));
        QCOMPARE(SettingsStore(path()).settings().serviceAPIBaseURL, settings.serviceAPIBaseURL);
    }

    void setsAreWrittenAsArrays() {
        SettingsStore(path()).setSettings(AppSettings());
        const QJsonArray visible =
            Json::parse(fileBytes()).toObject().value(QStringLiteral("visibleDefaultFields")).toArray();
        QCOMPARE(visible.size(), 3);
        QVERIFY(visible.contains(QStringLiteral("dueDate")));
    }

    void eachChangeSavesAndNotifies() {
        SettingsStore store(path());
        QSignalSpy changed(&store, &SettingsStore::settingsChanged);
        store.set(&AppSettings::storageProvider, StorageProviderKind::googleDrive);
        QCOMPARE(changed.size(), 1);
        QCOMPARE(SettingsStore(path()).settings().storageProvider, StorageProviderKind::googleDrive);
        store.modify([](AppSettings& settings) { settings.templates.append(TaskTemplate()); });
        QCOMPARE(changed.size(), 2);
        QCOMPARE(SettingsStore(path()).settings().templates, store.settings().templates);
        store.setProperty("settings", QVariant::fromValue(everyFieldSet()));
        QCOMPARE(changed.size(), 3);
        QCOMPARE(SettingsStore(path()).settings(), everyFieldSet());
    }

    void assigningAnEqualValueAlsoWritesAndNotifies() {
        SettingsStore store(path());
        store.setSettings(AppSettings());
        QVERIFY(QFile::remove(path()));
        QSignalSpy changed(&store, &SettingsStore::settingsChanged);
        store.set(&AppSettings::defaultReminderLeadMinutes, 15);
        QCOMPARE(changed.size(), 1);
        QVERIFY(QFile::exists(path()));
    }

    void aFailedWriteIsDroppedAndTheNextChangeTriesAgain() {
        const QString blocked = m_folder.filePath(QStringLiteral("blocked"));
        QFile blocker(blocked);
        QVERIFY(blocker.open(QIODevice::WriteOnly)); // a file where the folder should be
        blocker.close();
        const QString file = blocked + QStringLiteral("/settings.json");
        SettingsStore store(file);
        store.set(&AppSettings::showDueCountBadge, true);
        QVERIFY(store.settings().showDueCountBadge);
        QVERIFY(!QFile::exists(file));
        QVERIFY(QFile::remove(blocked));
        QVERIFY(QDir().mkpath(blocked));
        store.set(&AppSettings::defaultReminderLeadMinutes, 20);
        const AppSettings written = SettingsStore(file).settings();
        QVERIFY(written.showDueCountBadge);
        QCOMPARE(written.defaultReminderLeadMinutes, 20);
    }

    void aChangeMadeByAnotherProcessIsLostAtTheNextSave() {
        SettingsStore store(path());
        writeFile(R"({"showDueCountBadge": true})");
        QVERIFY(!store.settings().showDueCountBadge);
        store.set(&AppSettings::recordingShowCursor, false);
        QVERIFY(!SettingsStore(path()).settings().showDueCountBadge);
    }

    void theDefaultFileIsNorvaneBarSettingsJsonInTheConfigFolder() {
        QCOMPARE(SettingsStore::defaultFilePath(),
                 QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation) +
                     QStringLiteral("/NorvaneBar/settings.json"));
        QCOMPARE(SettingsStore().filePath(), SettingsStore::defaultFilePath());
    }
};

NORVANEBAR_TEST_GUILESS_MAIN(SettingsStoreTest)
#include "SettingsStoreTest.moc"
