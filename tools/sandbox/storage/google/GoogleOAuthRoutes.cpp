#include "sandbox/storage/google/GoogleRoutes.h"

#include <QCryptographicHash>
#include <QDateTime>
#include <QJsonObject>
#include <QUrl>
#include <QUrlQuery>

namespace {
using Fields = QMap<QString, QString>;

// Google's answer to a refused token request.
ServiceResponse tokenError(const QString& error, const QString& description, int status = 400) {
    return ServiceResponse::json({{QStringLiteral("error"), error}, {QStringLiteral("error_description"), description}},
                                 status);
}

// The fields of an application/x-www-form-urlencoded body ("+" is a blank there), or the answer to
// a body that is none: another type, or a field given twice.
std::variant<Fields, ServiceResponse> formFields(const ServiceRequest& request) {
    if (!request.header("Content-Type").startsWith("application/x-www-form-urlencoded")) {
        return tokenError(QStringLiteral("invalid_request"),
                          QStringLiteral("The body must be application/x-www-form-urlencoded"));
    }
    Fields fields;
    for (QByteArray pair : request.body.split('&')) {
        pair.replace('+', ' ');
        const qsizetype equals = pair.indexOf('=');
        const QString name = QUrl::fromPercentEncoding(pair.left(equals));
        if (equals < 0 || fields.contains(name)) {
            return tokenError(QStringLiteral("invalid_request"), QStringLiteral("Malformed field: ") + name);
        }
        fields.insert(name, QUrl::fromPercentEncoding(pair.mid(equals + 1)));
    }
    return fields;
}

std::optional<ServiceResponse> missingField(const Fields& fields, const QStringList& names) {
    for (const QString& name : names) {
        if (fields.value(name).isEmpty()) {
            return tokenError(QStringLiteral("invalid_request"), QStringLiteral("Missing required parameter: ") + name);
        }
    }
    return std::nullopt;
}

QString challengeOf(const QString& verifier) {
    return QString::fromLatin1(QCryptographicHash::hash(verifier.toUtf8(), QCryptographicHash::Sha256)
                                   .toBase64(QByteArray::Base64UrlEncoding | QByteArray::OmitTrailingEquals));
}

ServiceResponse issuedTokens(GoogleSandbox& state, const QString& refreshToken, bool withRefreshToken) {
    QJsonObject answer{
        {QStringLiteral("access_token"), state.issueAccessToken(refreshToken, QDateTime::currentMSecsSinceEpoch())},
        {QStringLiteral("expires_in"), state.accessTokenSeconds},
        {QStringLiteral("scope"), GoogleSandbox::driveFileScope},
        {QStringLiteral("token_type"), QStringLiteral("Bearer")},
    };
    if (withRefreshToken) {
        answer.insert(QStringLiteral("refresh_token"), refreshToken);
    }
    return ServiceResponse::json(answer);
}

ServiceResponse newGrant(GoogleSandbox& state, const QString& clientID) {
    const QString refreshToken = QStringLiteral("1//sandbox-") + GoogleSandbox::newID(40);
    state.grants.insert(refreshToken, GoogleSandbox::Grant{clientID});
    return issuedTokens(state, refreshToken, true);
}

ServiceResponse authorizationCodeGrant(GoogleSandbox& state, const Fields& fields) {
    if (const auto missing = missingField(fields, {QStringLiteral("client_id"), QStringLiteral("code"),
                                                   QStringLiteral("code_verifier"), QStringLiteral("redirect_uri")})) {
        return *missing;
    }
    if (fields.value(QStringLiteral("client_id")) != state.clientID) {
        return tokenError(QStringLiteral("invalid_client"), QStringLiteral("The OAuth client was not found."), 401);
    }
    // A code serves once, whatever the outcome.
    const std::optional<GoogleSandbox::Code> code =
        state.codes.contains(fields.value(QStringLiteral("code")))
            ? std::optional(state.codes.take(fields.value(QStringLiteral("code"))))
            : std::nullopt;
    if (!code || code->clientID != fields.value(QStringLiteral("client_id"))) {
        return tokenError(QStringLiteral("invalid_grant"), QStringLiteral("Malformed auth code."));
    }
    if (code->redirectURI != fields.value(QStringLiteral("redirect_uri"))) {
        return tokenError(QStringLiteral("redirect_uri_mismatch"), QStringLiteral("Bad Request"));
    }
    if (challengeOf(fields.value(QStringLiteral("code_verifier"))) != code->challenge) {
        return tokenError(QStringLiteral("invalid_grant"), QStringLiteral("Invalid code verifier."));
    }
    return newGrant(state, code->clientID);
}

ServiceResponse refreshTokenGrant(GoogleSandbox& state, const Fields& fields) {
    if (const auto missing = missingField(fields, {QStringLiteral("client_id"), QStringLiteral("refresh_token")})) {
        return *missing;
    }
    if (fields.value(QStringLiteral("client_id")) != state.clientID) {
        return tokenError(QStringLiteral("invalid_client"), QStringLiteral("The OAuth client was not found."), 401);
    }
    const QString refreshToken = fields.value(QStringLiteral("refresh_token"));
    const auto grant = state.grants.constFind(refreshToken);
    if (grant == state.grants.constEnd() || grant->revoked || grant->clientID != state.clientID) {
        return tokenError(QStringLiteral("invalid_grant"), QStringLiteral("Token has been expired or revoked."));
    }
    if (!state.rotateRefreshTokens) {
        return issuedTokens(state, refreshToken, false);
    }
    // A new refresh token in the answer, which a client may keep or not; the old one goes on working.
    return newGrant(state, grant->clientID);
}

// Where the browser goes with the answer: the redirect address with these query items.
ServiceResponse redirect(const QString& to, const QList<QPair<QString, QString>>& items) {
    QUrl target(to);
    QUrlQuery query;
    query.setQueryItems(items);
    target.setQuery(query);
    ServiceResponse response = ServiceResponse::html(QStringLiteral("<p>Returning to the application…</p>"));
    response.status = 302;
    response.headers.append({QByteArrayLiteral("Location"), target.toEncoded()});
    return response;
}

// What Google shows instead of a sign-in when the request names no client or address it knows.
ServiceResponse errorPage(int status, const QString& error) {
    ServiceResponse response = ServiceResponse::html(
        QStringLiteral("<h1>Access blocked: authorization error</h1><p>Error %1: %2</p>").arg(status).arg(error));
    response.status = status;
    return response;
}

ServiceResponse authorize(GoogleSandbox& state, const ServiceRequest& request) {
    const auto item = [&request](const char* name) { return request.queryValues(QString::fromLatin1(name)).value(0); };
    if (item("client_id") != state.clientID) {
        return errorPage(401, QStringLiteral("invalid_client"));
    }
    if (item("redirect_uri") != GoogleSandbox::redirectURI) {
        return errorPage(400, QStringLiteral("redirect_uri_mismatch"));
    }
    const QString askedState = item("state");
    const auto refuse = [&](const QString& error, const QString& description) {
        return redirect(GoogleSandbox::redirectURI, {{QStringLiteral("error"), error},
                                                     {QStringLiteral("error_description"), description},
                                                     {QStringLiteral("state"), askedState}});
    };
    if (item("response_type") != u"code" || item("scope") != GoogleSandbox::driveFileScope) {
        return refuse(QStringLiteral("invalid_request"), QStringLiteral("response_type code and the drive.file scope"));
    }
    if (item("code_challenge_method") != u"S256" || item("code_challenge").size() != 43) {
        return refuse(QStringLiteral("invalid_request"), QStringLiteral("Invalid code_challenge or its method"));
    }
    if (item("access_type") != u"offline" || item("prompt") != u"consent") {
        return refuse(QStringLiteral("invalid_request"), QStringLiteral("access_type offline with prompt consent"));
    }
    switch (state.authorization) {
    case GoogleSandbox::Authorization::deny:
        return redirect(GoogleSandbox::redirectURI, {{QStringLiteral("error"), QStringLiteral("access_denied")},
                                                     {QStringLiteral("state"), askedState}});
    case GoogleSandbox::Authorization::grant:
    case GoogleSandbox::Authorization::wrongState:
        break;
    }
    const QString code = QStringLiteral("4/sandbox-") + GoogleSandbox::newID(30);
    state.codes.insert(code, GoogleSandbox::Code{state.clientID, item("redirect_uri"), item("code_challenge")});
    const QString answeredState = state.authorization == GoogleSandbox::Authorization::wrongState
                                      ? askedState + QStringLiteral("-other")
                                      : askedState;
    return redirect(GoogleSandbox::redirectURI, {{QStringLiteral("state"), answeredState},
                                                 {QStringLiteral("code"), code},
                                                 {QStringLiteral("scope"), GoogleSandbox::driveFileScope}});
}
} // namespace

void addGoogleOAuthRoutes(RouteTable<RouteCall>& web, const std::shared_ptr<LockedGoogleSandbox>& google) {
    web.add("GET", u"google/o/oauth2/v2/auth", [google](const RouteCall& call) {
        return google->with([&call](GoogleSandbox& state) { return authorize(state, call.request); });
    });
    web.add("POST", u"google/token", [google](const RouteCall& call) {
        auto parsed = formFields(call.request);
        if (ServiceResponse* refused = std::get_if<ServiceResponse>(&parsed)) {
            return *refused;
        }
        const Fields fields = std::get<Fields>(std::move(parsed));
        const QString grantType = fields.value(QStringLiteral("grant_type"));
        return google->with([&](GoogleSandbox& state) {
            if (grantType == u"authorization_code") {
                return authorizationCodeGrant(state, fields);
            }
            if (grantType == u"refresh_token") {
                return refreshTokenGrant(state, fields);
            }
            return tokenError(QStringLiteral("unsupported_grant_type"),
                              QStringLiteral("Invalid grant_type: ") + grantType);
        });
    });
}
