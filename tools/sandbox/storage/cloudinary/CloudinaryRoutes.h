#pragma once

#include "sandbox/web/WebRoutes.h"

// The sandbox's stand-in for Cloudinary's REST upload API and its delivery of files, on the web base
// (the address that replaces Cloudinary's API host):
//   POST /v1_1/<cloud name>/auto/upload    an unsigned upload: multipart/form-data with the fields
//                                          "upload_preset" and "file"
//   GET  /<cloud name>/<type>/upload/v<version>/<public id>[.<format>]    the file as it was uploaded
// One cloud exists, with an unsigned upload preset and a signed one. Refusals carry Cloudinary's error
// body, {"error": {"message": "..."}}, with its status and its words.
namespace SandboxCloudinary {
inline const QString cloudName = QStringLiteral("norvanebar-demo");
inline const QString unsignedPreset = QStringLiteral("norvanebar_unsigned");
// A preset made for signed uploads, which Cloudinary refuses to an unsigned one.
inline const QString signedPreset = QStringLiteral("norvanebar_signed");
} // namespace SandboxCloudinary

// Files go to `dataFolder`; the addresses of the answers start with `webBase`.
void addCloudinaryRoutes(WebRoutes& routes, const QString& webBase, const QString& dataFolder);
