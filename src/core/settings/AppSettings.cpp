#include "settings/AppSettings.h"

#include "json/JsonEncoding.h"

AppSettings AppSettings::fromJson(const Json::JsonObject& json) {
    AppSettings settings;
    settings.visibleDefaultFields = json.optional<QSet<DefaultField>>(QStringLiteral("visibleDefaultFields"))
                                        .value_or(settings.visibleDefaultFields);
    settings.hiddenCustomFieldIDs =
        json.optional<QSet<QString>>(QStringLiteral("hiddenCustomFieldIDs")).value_or(settings.hiddenCustomFieldIDs);
    settings.defaultReminderLeadMinutes = json.optional<qint64>(QStringLiteral("defaultReminderLeadMinutes"))
                                              .value_or(settings.defaultReminderLeadMinutes);
    settings.bookmarks = json.optional<QList<Bookmark>>(QStringLiteral("bookmarks")).value_or(settings.bookmarks);
    settings.preferredWorkspaceID = json.optional<QString>(QStringLiteral("preferredWorkspaceID"));
    settings.lastLocation = json.optional<SavedLocation>(QStringLiteral("lastLocation"));
    settings.hotKeyPreset = json.optional<HotKeyPreset>(QStringLiteral("hotKeyPreset")).value_or(settings.hotKeyPreset);
    settings.templates = json.optional<QList<TaskTemplate>>(QStringLiteral("templates")).value_or(settings.templates);
    settings.screenshotHotKeyPreset =
        json.optional<HotKeyPreset>(QStringLiteral("screenshotHotKeyPreset")).value_or(settings.screenshotHotKeyPreset);
    settings.screenshotTemplateID = json.optional<QUuid>(QStringLiteral("screenshotTemplateID"));
    settings.screenRecordingHotKeyPreset = json.optional<HotKeyPreset>(QStringLiteral("screenRecordingHotKeyPreset"))
                                               .value_or(settings.screenRecordingHotKeyPreset);
    settings.screenRecordingTemplateID = json.optional<QUuid>(QStringLiteral("screenRecordingTemplateID"));
    settings.recordingQuality =
        json.optional<RecordingQuality>(QStringLiteral("recordingQuality")).value_or(settings.recordingQuality);
    settings.recordingCaptureMicrophone =
        json.optional<bool>(QStringLiteral("recordingCaptureMicrophone")).value_or(settings.recordingCaptureMicrophone);
    settings.recordingShowCursor =
        json.optional<bool>(QStringLiteral("recordingShowCursor")).value_or(settings.recordingShowCursor);
    settings.recordingIncludeFacecam =
        json.optional<bool>(QStringLiteral("recordingIncludeFacecam")).value_or(settings.recordingIncludeFacecam);
    settings.recordingFacecamStyle =
        json.optional<FacecamStyle>(QStringLiteral("recordingFacecamStyle")).value_or(settings.recordingFacecamStyle);
    settings.recordingMaxDurationMinutes = json.optional<qint64>(QStringLiteral("recordingMaxDurationMinutes"))
                                               .value_or(settings.recordingMaxDurationMinutes);
    settings.showDueCountBadge =
        json.optional<bool>(QStringLiteral("showDueCountBadge")).value_or(settings.showDueCountBadge);
    settings.storageProvider =
        json.optional<StorageProviderKind>(QStringLiteral("storageProvider")).value_or(settings.storageProvider);
    settings.cloudinaryCloudName =
        json.optional<QString>(QStringLiteral("cloudinaryCloudName")).value_or(settings.cloudinaryCloudName);
    settings.cloudinaryUploadPreset =
        json.optional<QString>(QStringLiteral("cloudinaryUploadPreset")).value_or(settings.cloudinaryUploadPreset);
    settings.cloudflareR2AccountID =
        json.optional<QString>(QStringLiteral("cloudflareR2AccountID")).value_or(settings.cloudflareR2AccountID);
    settings.cloudflareR2Bucket =
        json.optional<QString>(QStringLiteral("cloudflareR2Bucket")).value_or(settings.cloudflareR2Bucket);
    settings.cloudflareR2PublicURLBase = json.optional<QString>(QStringLiteral("cloudflareR2PublicURLBase"))
                                             .value_or(settings.cloudflareR2PublicURLBase);
    settings.googleDriveFolderID =
        json.optional<QString>(QStringLiteral("googleDriveFolderID")).value_or(settings.googleDriveFolderID);
    settings.accounts = json.optional<QList<StoredAccount>>(QStringLiteral("accounts")).value_or(settings.accounts);
    settings.activeAccountID = json.optional<qint64>(QStringLiteral("activeAccountID"));
    settings.accountLocations = json.optional<QMap<QString, SavedLocation>>(QStringLiteral("accountLocations"))
                                    .value_or(settings.accountLocations);
    settings.accountPreferredWorkspaceIDs =
        json.optional<QMap<QString, QString>>(QStringLiteral("accountPreferredWorkspaceIDs"))
            .value_or(settings.accountPreferredWorkspaceIDs);
    settings.branchNameFormat =
        json.optional<QString>(QStringLiteral("branchNameFormat")).value_or(settings.branchNameFormat);
    settings.serviceAPIBaseURL = json.optional<QString>(QStringLiteral("serviceAPIBaseURL"));
    settings.serviceWebBaseURL = json.optional<QString>(QStringLiteral("serviceWebBaseURL"));
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
        .object();
}
