#pragma once

#include "core/json/JsonDecoding.h"
#include "core/recording/FacecamStyle.h"
#include "core/recording/RecordingConfiguration.h"
#include "core/recording/RecordingQuality.h"
#include "core/settings/Bookmark.h"
#include "core/settings/DefaultField.h"
#include "core/settings/HotKeyPreset.h"
#include "core/settings/SavedLocation.h"
#include "core/settings/StorageProviderKind.h"
#include "core/settings/StoredAccount.h"
#include "core/settings/TaskTemplate.h"

#include <QJsonObject>
#include <QList>
#include <QMap>
#include <QSet>
#include <QString>
#include <QUuid>
#include <optional>

// All that NorvaneBar remembers apart from secrets and queued work: the settings file. Each JSON key
// is the field's name. A fresh value holds the defaults, and a missing or null key reads as its
// default; this is the whole of the migration from older files. A present key of the wrong type or
// an unknown raw value fails the whole file.
struct AppSettings {
    QSet<DefaultField> visibleDefaultFields{DefaultField::status, DefaultField::assignee, DefaultField::dueDate};
    QSet<QString> hiddenCustomFieldIDs;
    qint64 defaultReminderLeadMinutes = 15;
    QList<Bookmark> bookmarks;
    std::optional<QString> preferredWorkspaceID;
    std::optional<SavedLocation> lastLocation;
    HotKeyPreset hotKeyPreset = HotKeyPreset::optionShiftSpace;
    QList<TaskTemplate> templates;
    HotKeyPreset screenshotHotKeyPreset = HotKeyPreset::disabled;
    std::optional<QUuid> screenshotTemplateID;
    HotKeyPreset screenRecordingHotKeyPreset = HotKeyPreset::disabled;
    std::optional<QUuid> screenRecordingTemplateID;
    RecordingQuality recordingQuality = RecordingQuality::hd720;
    bool recordingCaptureMicrophone = true;
    bool recordingShowCursor = true;
    bool recordingIncludeFacecam = false;
    FacecamStyle recordingFacecamStyle;
    qint64 recordingMaxDurationMinutes = 15;
    bool showDueCountBadge = false;
    StorageProviderKind storageProvider = StorageProviderKind::norvane;
    QString cloudinaryCloudName;
    QString cloudinaryUploadPreset;
    // Replaces Cloudinary's REST API host (the part before /v1_1), for the sandbox.
    std::optional<QString> cloudinaryAPIBaseURL;
    QString cloudflareR2AccountID;
    QString cloudflareR2Bucket;
    QString cloudflareR2PublicURLBase;
    QString googleDriveFolderID;
    QList<StoredAccount> accounts;
    std::optional<qint64> activeAccountID;
    // Keyed by the user's id in decimal.
    QMap<QString, SavedLocation> accountLocations;
    // Keyed by the user's id in decimal.
    QMap<QString, QString> accountPreferredWorkspaceIDs;
    QString branchNameFormat = QStringLiteral(":taskId:_:taskName:_:username:");
    // Override the build's addresses of the service (API base with its /api/v2 path, and web base),
    // for the sandbox, a staging or a self-hosted service.
    std::optional<QString> serviceAPIBaseURL;
    std::optional<QString> serviceWebBaseURL;
    // Replaces the base of Cloudflare's R2 S3 API (https://<account id>.r2.cloudflarestorage.com),
    // for a local S3 server.
    std::optional<QString> cloudflareR2EndpointBaseURL;
    // Override Google's addresses (scheme, host and any leading path) for tests and the demo: its
    // sign-in page, its token endpoint, the Drive API, Drive's upload endpoint and Drive's web pages.
    std::optional<QString> googleAccountsBaseURL;
    std::optional<QString> googleOAuthTokenBaseURL;
    std::optional<QString> googleDriveAPIBaseURL;
    std::optional<QString> googleDriveUploadBaseURL;
    std::optional<QString> googleDriveWebBaseURL;

    // Absent optional fields are left out; all others are always written.
    // The recording defaults as one configuration, the maximum duration minutes × 60 seconds.
    RecordingConfiguration recordingConfiguration() const;
    // Keeps a configuration as the recording defaults, the maximum duration in whole minutes, truncated.
    void setRecordingConfiguration(const RecordingConfiguration& configuration);

    static AppSettings fromJson(const Json::JsonObject& json);
    QJsonObject toJson() const;

    bool operator==(const AppSettings&) const = default;
};
