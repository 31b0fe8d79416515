#pragma once

#include "core/settings/AppSettings.h"

#include <QString>
#include <QUrl>

// Where Google's services live: the sign-in page and token endpoint of OAuth 2.0, the Drive API, its
// upload endpoint and Drive's web pages. Google's own, unless the settings file names others (tests
// and the demo aim them at the sandbox). Each base is a scheme, a host and any leading path.
struct GoogleAddresses {
    QUrl accountsBaseURL;
    QUrl tokenBaseURL;
    QUrl driveAPIBaseURL;
    QUrl driveUploadBaseURL;
    QUrl driveWebBaseURL;

    static GoogleAddresses builtIn();
    static GoogleAddresses from(const AppSettings& settings);

    // The OAuth 2.0 authorization endpoint, /o/oauth2/v2/auth.
    QUrl authorizationURL() const;
    // The OAuth 2.0 token endpoint, /token.
    QUrl tokenURL() const;
    // Drive's multipart upload: /upload/drive/v3/files with the query that asks for the id and link.
    QUrl uploadURL() const;
    // The permissions of one file: /drive/v3/files/<id>/permissions.
    QUrl permissionsURL(const QString& fileID) const;
    // A file's page on Drive's web: /file/d/<id>/view.
    QUrl fileViewURL(const QString& fileID) const;

    bool operator==(const GoogleAddresses&) const = default;
};
