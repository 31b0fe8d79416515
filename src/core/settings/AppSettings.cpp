#include "core/settings/AppSettings.h"

#include "core/json/JsonEncoding.h"

namespace {
// A key that is present replaces the default already in `field`; a missing or null key leaves it.
template <typename T> void readKey(const Json::JsonObject& json, const QString& key, T& field) {
    if (std::optional<T> value = json.optional<T>(key)) {
        field = std::move(*value);
    }
}

// An optional field is absent when its key is missing or null.
template <typename T> void readKey(const Json::JsonObject& json, const QString& key, std::optional<T>& field) {
    field = json.optional<T>(key);
}
} // namespace

AppSettings AppSettings::fromJson(const Json::JsonObject& json) {
    AppSettings settings;
    readKey(json, QStringLiteral("visibleDefaultFields"), settings.visibleDefaultFields);
    readKey(json, QStringLiteral("hiddenCustomFieldIDs"), settings.hiddenCustomFieldIDs);
    readKey(json, QStringLiteral("defaultReminderLeadMinutes"), settings.defaultReminderLeadMinutes);
    readKey(json, QStringLiteral("bookmarks"), settings.bookmarks);
    readKey(json, QStringLiteral("preferredWorkspaceID"), settings.preferredWorkspaceID);
    readKey(json, QStringLiteral("lastLocation"), settings.lastLocation);
    readKey(json, QStringLiteral("hotKeyPreset"), settings.hotKeyPreset);
    readKey(json, QStringLiteral("templates"), settings.templates);
    readKey(json, QStringLiteral("screenshotHotKeyPreset"), settings.screenshotHotKeyPreset);
    readKey(json, QStringLiteral("screenshotTemplateID"), settings.screenshotTemplateID);
    readKey(json, QStringLiteral("screenRecordingHotKeyPreset"), settings.screenRecordingHotKeyPreset);
    readKey(json, QStringLiteral("screenRecordingTemplateID"), settings.screenRecordingTemplateID);
    readKey(json, QStringLiteral("recordingQuality"), settings.recordingQuality);
    readKey(json, QStringLiteral("recordingCaptureMicrophone"), settings.recordingCaptureMicrophone);
    readKey(json, QStringLiteral("recordingShowCursor"), settings.recordingShowCursor);
    readKey(json, QStringLiteral("recordingIncludeFacecam"), settings.recordingIncludeFacecam);
    readKey(json, QStringLiteral("recordingFacecamStyle"), settings.recordingFacecamStyle);
    readKey(json, QStringLiteral("recordingMaxDurationMinutes"), settings.recordingMaxDurationMinutes);
    readKey(json, QStringLiteral("showDueCountBadge"), settings.showDueCountBadge);
    readKey(json, QStringLiteral("storageProvider"), settings.storageProvider);
    readKey(json, QStringLiteral("cloudinaryCloudName"), settings.cloudinaryCloudName);
    readKey(json, QStringLiteral("cloudinaryUploadPreset"), settings.cloudinaryUploadPreset);
    readKey(json, QStringLiteral("cloudinaryAPIBaseURL"), settings.cloudinaryAPIBaseURL);
    readKey(json, QStringLiteral("cloudflareR2AccountID"), settings.cloudflareR2AccountID);
    readKey(json, QStringLiteral("cloudflareR2Bucket"), settings.cloudflareR2Bucket);
    readKey(json, QStringLiteral("cloudflareR2PublicURLBase"), settings.cloudflareR2PublicURLBase);
    readKey(json, QStringLiteral("googleDriveFolderID"), settings.googleDriveFolderID);
    readKey(json, QStringLiteral("accounts"), settings.accounts);
    readKey(json, QStringLiteral("activeAccountID"), settings.activeAccountID);
    readKey(json, QStringLiteral("accountLocations"), settings.accountLocations);
    readKey(json, QStringLiteral("accountPreferredWorkspaceIDs"), settings.accountPreferredWorkspaceIDs);
    readKey(json, QStringLiteral("branchNameFormat"), settings.branchNameFormat);
    readKey(json, QStringLiteral("serviceAPIBaseURL"), settings.serviceAPIBaseURL);
    readKey(json, QStringLiteral("serviceWebBaseURL"), settings.serviceWebBaseURL);
    readKey(json, QStringLiteral("cloudflareR2EndpointBaseURL"), settings.cloudflareR2EndpointBaseURL);
    readKey(json, QStringLiteral("googleAccountsBaseURL"), settings.googleAccountsBaseURL);
    readKey(json, QStringLiteral("googleOAuthTokenBaseURL"), settings.googleOAuthTokenBaseURL);
    readKey(json, QStringLiteral("googleDriveAPIBaseURL"), settings.googleDriveAPIBaseURL);
    readKey(json, QStringLiteral("googleDriveUploadBaseURL"), settings.googleDriveUploadBaseURL);
    readKey(json, QStringLiteral("googleDriveWebBaseURL"), settings.googleDriveWebBaseURL);
    return settings;
}

QJsonObject AppSettings::toJson() const {
    return Json::ObjectBuilder()
        .set(QStringLiteral("visibleDefaultFields"), visibleDefaultFields)
        .set(QStringLiteral("hiddenCustomFieldIDs"), hiddenCustomFieldIDs)
        .set(QStringLiteral("defaultReminderLeadMinutes"), defaultReminderLeadMinutes)
        .set(QStringLiteral("bookmarks"), bookmarks)
        .set(QStringLiteral("preferredWorkspaceID"), preferredWorkspaceID)
        .set(QStringLiteral("lastLocation"), lastLocation)
        .set(QStringLiteral("hotKeyPreset"), hotKeyPreset)
        .set(QStringLiteral("templates"), templates)
        .set(QStringLiteral("screenshotHotKeyPreset"), screenshotHotKeyPreset)
        .set(QStringLiteral("screenshotTemplateID"), screenshotTemplateID)
        .set(QStringLiteral("screenRecordingHotKeyPreset"), screenRecordingHotKeyPreset)
        .set(QStringLiteral("screenRecordingTemplateID"), screenRecordingTemplateID)
        .set(QStringLiteral("recordingQuality"), recordingQuality)
        .set(QStringLiteral("recordingCaptureMicrophone"), recordingCaptureMicrophone)
        .set(QStringLiteral("recordingShowCursor"), recordingShowCursor)
        .set(QStringLiteral("recordingIncludeFacecam"), recordingIncludeFacecam)
        .set(QStringLiteral("recordingFacecamStyle"), recordingFacecamStyle)
        .set(QStringLiteral("recordingMaxDurationMinutes"), recordingMaxDurationMinutes)
        .set(QStringLiteral("showDueCountBadge"), showDueCountBadge)
        .set(QStringLiteral("storageProvider"), storageProvider)
        .set(QStringLiteral("cloudinaryCloudName"), cloudinaryCloudName)
        .set(QStringLiteral("cloudinaryUploadPreset"), cloudinaryUploadPreset)
        .set(QStringLiteral("cloudinaryAPIBaseURL"), cloudinaryAPIBaseURL)
        .set(QStringLiteral("cloudflareR2AccountID"), cloudflareR2AccountID)
        .set(QStringLiteral("cloudflareR2Bucket"), cloudflareR2Bucket)
        .set(QStringLiteral("cloudflareR2PublicURLBase"), cloudflareR2PublicURLBase)
        .set(QStringLiteral("googleDriveFolderID"), googleDriveFolderID)
        .set(QStringLiteral("accounts"), accounts)
        .set(QStringLiteral("activeAccountID"), activeAccountID)
        .set(QStringLiteral("accountLocations"), accountLocations)
        .set(QStringLiteral("accountPreferredWorkspaceIDs"), accountPreferredWorkspaceIDs)
        .set(QStringLiteral("branchNameFormat"), branchNameFormat)
        .set(QStringLiteral("serviceAPIBaseURL"), serviceAPIBaseURL)
        .set(QStringLiteral("serviceWebBaseURL"), serviceWebBaseURL)
        .set(QStringLiteral("cloudflareR2EndpointBaseURL"), cloudflareR2EndpointBaseURL)
        .set(QStringLiteral("googleAccountsBaseURL"), googleAccountsBaseURL)
        .set(QStringLiteral("googleOAuthTokenBaseURL"), googleOAuthTokenBaseURL)
        .set(QStringLiteral("googleDriveAPIBaseURL"), googleDriveAPIBaseURL)
        .set(QStringLiteral("googleDriveUploadBaseURL"), googleDriveUploadBaseURL)
        .set(QStringLiteral("googleDriveWebBaseURL"), googleDriveWebBaseURL)
        .object();
}

RecordingConfiguration AppSettings::recordingConfiguration() const {
    return {
        .quality = recordingQuality,
        .captureMicrophone = recordingCaptureMicrophone,
        .showCursor = recordingShowCursor,
        .includeFacecam = recordingIncludeFacecam,
        .facecamStyle = recordingFacecamStyle,
        .maxDurationSeconds = static_cast<double>(recordingMaxDurationMinutes) * 60.0,
    };
}

void AppSettings::setRecordingConfiguration(const RecordingConfiguration& configuration) {
    recordingQuality = configuration.quality;
    recordingCaptureMicrophone = configuration.captureMicrophone;
    recordingShowCursor = configuration.showCursor;
    recordingIncludeFacecam = configuration.includeFacecam;
    recordingFacecamStyle = configuration.facecamStyle;
    recordingMaxDurationMinutes = static_cast<qint64>(configuration.maxDurationSeconds / 60.0);
}
