#pragma once

#include "core/settings/AppSettings.h"

#include <QUrl>

// Where the service lives: the API base (path /api/v2) and the web base. Built in, unless the
// settings file names others (a sandbox, a staging or a self-hosted service).
struct ServiceAddresses {
    QUrl apiBaseURL;
    QUrl webBaseURL;

    static ServiceAddresses builtIn();
    static ServiceAddresses from(const AppSettings& settings);

    // A list's page on the web: the web base, the workspace's id, "/v/l/li/" and the list's id.
    QString listURL(const QString& workspaceID, const QString& listID) const;
};
