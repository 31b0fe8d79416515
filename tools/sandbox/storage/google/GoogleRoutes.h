#pragma once

#include "sandbox/service/RouteTable.h"
#include "sandbox/storage/google/GoogleSandbox.h"

#include <memory>

// Stand-ins of Google's hosts that NorvaneBar talks to, each under /google with the paths Google
// uses below its host, so one base address serves them all: the authorization page
// (GET /google/o/oauth2/v2/auth), the token endpoint (POST /google/token), Drive's upload
// (POST /google/upload/drive/v3/files), its permissions (POST /google/drive/v3/files/{id}/permissions),
// a file's content (GET /google/drive/v3/files/{id}?alt=media) and its web page
// (GET /google/file/d/{id}/view). Each checks what it receives and answers as Google documents.
// The test endpoints, with --admin: GET, POST and DELETE /_sandbox/google (the state, its settings,
// a fresh start) and POST /_sandbox/google/revoke (every grant revoked).
void addGoogleRoutes(RouteTable<RouteCall>& web, RouteTable<RouteCall>& admin, const QString& webBase);

// The sign-in: the authorization page and the token endpoint.
void addGoogleOAuthRoutes(RouteTable<RouteCall>& web, const std::shared_ptr<LockedGoogleSandbox>& google);
// Drive: the upload, the permissions, a file's content and its web page.
void addDriveRoutes(RouteTable<RouteCall>& web, const std::shared_ptr<LockedGoogleSandbox>& google,
                    const QString& webBase);
