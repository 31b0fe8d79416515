// Any answer of Google's token endpoint: a success decodes as the token record or fails with a
// DecodingError alone, and a refusal's message comes out as text or absent, never as an exception.
// The first byte picks which of the two the body is read as.
#include "core/storage/GoogleAuthRecords.h"

#include <QJsonObject>

#include <cstdint>
#include <cstdlib>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    if (size == 0) {
        return 0;
    }
    const QByteArray body(reinterpret_cast<const char*>(data + 1), static_cast<qsizetype>(size - 1));
    if (data[0] % 2 == 0) {
        try {
            const auto tokens = Json::decode<GoogleTokenResponse>(Json::parse(body), QStringLiteral("$"));
            // What decoded reads back the same from its own JSON.
            QJsonObject again{{QStringLiteral("access_token"), tokens.accessToken},
                              {QStringLiteral("expires_in"), tokens.expiresIn}};
            if (tokens.refreshToken) {
                again.insert(QStringLiteral("refresh_token"), *tokens.refreshToken);
            }
            if (Json::decode<GoogleTokenResponse>(again, QStringLiteral("$")) != tokens) {
                std::abort();
            }
        } catch (const DecodingError&) {
            // Any other exception escapes and ends the run.
        }
    } else {
        (void)GoogleErrorResponse::messageIn(body);
    }
    return 0;
}
