#include "core/storage/GoogleOAuthClient.h"

namespace GoogleOAuthClient {

std::optional<QString> builtInID() {
    const QString id = QStringLiteral(NORVANEBAR_GOOGLE_OAUTH_CLIENT_ID).trimmed();
    return id.isEmpty() ? std::nullopt : std::optional(id);
}

} // namespace GoogleOAuthClient
