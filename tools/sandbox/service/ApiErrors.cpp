#include "sandbox/service/ApiErrors.h"

namespace ApiErrors {

ServiceResponse error(int status, const QString& message, const QString& code) {
    return ServiceResponse::json({{QStringLiteral("err"), message}, {QStringLiteral("ECODE"), code}}, status);
}

ServiceResponse missingToken() {
    return error(401, QStringLiteral("Authorization header required"), QStringLiteral("OAUTH_017"));
}

ServiceResponse invalidToken() {
    return error(401, QStringLiteral("Token invalid"), QStringLiteral("OAUTH_025"));
}

ServiceResponse routeNotFound() {
    return error(404, QStringLiteral("Route not found"), QStringLiteral("APP_001"));
}

ServiceResponse notFound(const QString& what) {
    return error(404, what + QStringLiteral(" not found"), what.toUpper() + QStringLiteral("_NOT_FOUND"));
}

ServiceResponse invalidJson(const QString& detail) {
    return error(400, QStringLiteral("Request body is not a JSON object: ") + detail, QStringLiteral("INPUT_001"));
}

ServiceResponse invalidField(const QString& message) {
    return error(400, message, QStringLiteral("INPUT_002"));
}

ServiceResponse invalidQuery(const QString& message) {
    return error(400, message, QStringLiteral("INPUT_003"));
}

ServiceResponse bodyTooLarge() {
    return error(413, QStringLiteral("Request body too large"), QStringLiteral("INPUT_004"));
}

ServiceResponse storageLimitReached() {
    return error(403, QStringLiteral("Workspace storage limit reached"), QLatin1String(storageLimitCode));
}

} // namespace ApiErrors
