#pragma once

#include <QString>
#include <optional>

namespace GoogleOAuthClient {

// The OAuth client id this program was built with (the CMake cache entry
// NORVANEBAR_GOOGLE_OAUTH_CLIENT_ID), trimmed of white space; absent when the build has none.
std::optional<QString> builtInID();

} // namespace GoogleOAuthClient
