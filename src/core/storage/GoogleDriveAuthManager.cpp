#include "core/storage/GoogleDriveAuthManager.h"

#include "core/storage/GoogleAuthRecords.h"
#include "core/storage/GoogleDriveAuthError.h"
#include "core/storage/OAuthEncoding.h"
#include "core/storage/StorageTransfer.h"
#include "core/support/DoubleText.h"
#include "core/support/EpochSeconds.h"

#include <QCoreApplication>
#include <QPointer>
#include <QUrlQuery>
#include <QUuid>

namespace {
// What a token request needs, copied out of the manager before the first suspension, so that the
// request goes on without it.
struct TokenEndpoint {
    QNetworkAccessManager* session;
    QUrl url;
    StorageCredentialStore credentials;
    Clock clock;
};

// A token with this many seconds or fewer to live is treated as spent.
constexpr qint64 spentWithinSeconds = 60;

QString translated(const char* text) {
    return QCoreApplication::translate("GoogleDriveAuthManager", text);
}

QCoro::Task<StorageTransfer::Answer> postForm(TokenEndpoint endpoint, OAuthEncoding::FormFields fields) {
    QNetworkRequest request(endpoint.url);
    request.setHeader(QNetworkRequest::ContentTypeHeader, QByteArrayLiteral("application/x-www-form-urlencoded"));
    QCoro::Task<StorageTransfer::Answer> sending =
        StorageTransfer::send(endpoint.session, request, QByteArrayLiteral("POST"), OAuthEncoding::formEncode(fields));
    co_return co_await std::move(sending);
}

GoogleTokenResponse decodeTokens(const QByteArray& body) {
    return Json::decode<GoogleTokenResponse>(Json::parse(body), QStringLiteral("$"));
}

QCoro::Task<> exchangeCodeForTokens(TokenEndpoint endpoint, QString code, QString verifier, QString clientID) {
    QCoro::Task<StorageTransfer::Answer> posting =
        postForm(endpoint, {{QStringLiteral("client_id"), clientID},
                            {QStringLiteral("code"), code},
                            {QStringLiteral("code_verifier"), verifier},
                            {QStringLiteral("grant_type"), QStringLiteral("authorization_code")},
                            {QStringLiteral("redirect_uri"), GoogleDriveAuthManager::redirectURI}});
    const StorageTransfer::Answer answer = co_await std::move(posting);
    if (!answer.succeeded()) {
        throw GoogleDriveAuthError::tokenExchangeFailed(
            GoogleErrorResponse::messageIn(answer.body).value_or(translated("Could not complete Google sign-in.")));
    }
    const GoogleTokenResponse tokens = decodeTokens(answer.body);
    QCoro::Task<> storing = endpoint.credentials.setGoogleTokens(tokens.accessToken, tokens.refreshToken,
                                                                 endpoint.clock().addSecs(tokens.expiresIn));
    co_await std::move(storing);
}

QCoro::Task<QString> refreshAccessToken(TokenEndpoint endpoint, std::optional<QString> clientID) {
    if (!clientID) {
        throw GoogleDriveAuthError(GoogleDriveAuthError::MissingClientID{});
    }
    QCoro::Task<std::optional<QString>> reading = endpoint.credentials.googleRefreshTokenStore.read();
    const std::optional<QString> refreshToken = co_await std::move(reading);
    if (!refreshToken) {
        throw GoogleDriveAuthError(GoogleDriveAuthError::NotSignedIn{});
    }
    QCoro::Task<StorageTransfer::Answer> posting =
        postForm(endpoint, {{QStringLiteral("client_id"), *clientID},
                            {QStringLiteral("refresh_token"), *refreshToken},
                            {QStringLiteral("grant_type"), QStringLiteral("refresh_token")}});
    const StorageTransfer::Answer answer = co_await std::move(posting);
    // A refused refresh, a revoked grant among them, leaves the stored tokens as they are.
    if (!answer.succeeded()) {
        throw GoogleDriveAuthError::tokenExchangeFailed(
            GoogleErrorResponse::messageIn(answer.body)
                .value_or(translated("Could not refresh the Google Drive session.")));
    }
    const GoogleTokenResponse tokens = decodeTokens(answer.body);
    // The refresh token stays as stored, even when the answer holds a new one.
    QCoro::Task<> accessWrite = endpoint.credentials.googleAccessTokenStore.write(tokens.accessToken);
    co_await std::move(accessWrite);
    const QDateTime expiresAt = endpoint.clock().addSecs(tokens.expiresIn);
    QCoro::Task<> expiryWrite =
        endpoint.credentials.googleAccessTokenExpiryStore.write(DoubleText::shortest(EpochSeconds::of(expiresAt)));
    co_await std::move(expiryWrite);
    co_return tokens.accessToken;
}

// The value of the first query item named `name`, if there is one.
std::optional<QString> firstItem(const QUrlQuery& query, const QString& name) {
    if (!query.hasQueryItem(name)) {
        return std::nullopt;
    }
    return query.queryItemValue(name, QUrl::FullyDecoded);
}

QUrl authorizationURL(const GoogleAddresses& addresses, const QString& clientID, const QString& challenge,
                      const QString& state) {
    QUrl url = addresses.authorizationURL();
    QUrlQuery query;
    query.setQueryItems({{QStringLiteral("client_id"), clientID},
                         {QStringLiteral("redirect_uri"), GoogleDriveAuthManager::redirectURI},
                         {QStringLiteral("response_type"), QStringLiteral("code")},
                         {QStringLiteral("scope"), GoogleDriveAuthManager::scope},
                         {QStringLiteral("code_challenge"), challenge},
                         {QStringLiteral("code_challenge_method"), QStringLiteral("S256")},
                         {QStringLiteral("access_type"), QStringLiteral("offline")},
                         {QStringLiteral("prompt"), QStringLiteral("consent")},
                         {QStringLiteral("state"), state}});
    url.setQuery(query);
    return url;
}
} // namespace

const QString GoogleDriveAuthManager::redirectURI = QStringLiteral("com.norvanebar.app:/oauth/google");
const QString GoogleDriveAuthManager::scope = QStringLiteral("https://www.googleapis.com/auth/drive.file");

QString GoogleDriveAuthManager::callbackScheme() {
    return QUrl(redirectURI).scheme();
}

GoogleDriveAuthManager::GoogleDriveAuthManager(Environment environment, QObject* parent)
    : QObject(parent)
    , m_environment(std::move(environment)) {}

QCoro::Task<> GoogleDriveAuthManager::signIn() {
    const std::optional<QString> clientID = m_environment.clientID;
    if (!clientID) {
        throw GoogleDriveAuthError(GoogleDriveAuthError::MissingClientID{});
    }
    const QString verifier = OAuthEncoding::makeCodeVerifier();
    const QString state = QUuid::createUuid().toString(QUuid::WithoutBraces);
    const QUrl url =
        authorizationURL(m_environment.addresses, *clientID, OAuthEncoding::codeChallenge(verifier), state);
    if (!url.isValid()) {
        throw GoogleDriveAuthError::authorizationFailed(translated("Could not build the sign-in URL."));
    }
    const TokenEndpoint endpoint{m_environment.session, m_environment.addresses.tokenURL(), m_environment.credentials,
                                 m_environment.clock};
    const QPointer<GoogleDriveAuthManager> self(this);
    QCoro::Task<QUrl> presenting = presentAuthSession(url);
    const QUrlQuery answer(co_await std::move(presenting));
    // The state is checked before anything else in the answer.
    if (firstItem(answer, QStringLiteral("state")) != state) {
        throw GoogleDriveAuthError::authorizationFailed(translated("Sign-in response did not match the request."));
    }
    const std::optional<QString> code = firstItem(answer, QStringLiteral("code"));
    if (!code) {
        throw GoogleDriveAuthError::authorizationFailed(
            firstItem(answer, QStringLiteral("error")).value_or(translated("No authorization code returned.")));
    }
    QCoro::Task<> exchanging = exchangeCodeForTokens(endpoint, *code, verifier, *clientID);
    co_await std::move(exchanging);
    if (self) {
        self->setConnected(true);
    }
}

QCoro::Task<QUrl> GoogleDriveAuthManager::presentAuthSession(QUrl url) {
    if (m_environment.scheme) {
        if (const std::optional<QString> problem = m_environment.scheme->registerHandler(callbackScheme())) {
            throw GoogleDriveAuthError::authorizationFailed(*problem);
        }
    }
    // Only one sign-in waits at a time: an earlier one ends as cancelled.
    cancelSignIn();
    const Answer answer;
    m_waiting = answer;
    emit waitingForBrowserChanged();
    m_environment.browser->openURL(url);
    // Whoever answers has already let go of the waiting sign-in.
    const std::optional<QUrl> callback = co_await answer;
    if (!callback) {
        throw GoogleDriveAuthError::authorizationFailed(translated("Sign-in was cancelled."));
    }
    co_return *callback;
}

bool GoogleDriveAuthManager::handleCallback(const QUrl& url) {
    if (!m_waiting || url.scheme().compare(callbackScheme(), Qt::CaseInsensitive) != 0) {
        return false;
    }
    endWaiting(url);
    return true;
}

void GoogleDriveAuthManager::cancelSignIn() {
    if (m_waiting) {
        endWaiting(std::nullopt);
    }
}

void GoogleDriveAuthManager::endWaiting(std::optional<QUrl> answer) {
    const Answer waiting = *std::exchange(m_waiting, std::nullopt);
    emit waitingForBrowserChanged();
    // The waiting sign-in resumes here, before this returns.
    waiting.fulfil(std::move(answer));
}

QCoro::Task<QString> GoogleDriveAuthManager::validAccessToken() {
    const TokenEndpoint endpoint{m_environment.session, m_environment.addresses.tokenURL(), m_environment.credentials,
                                 m_environment.clock};
    const std::optional<QString> clientID = m_environment.clientID;
    QCoro::Task<std::optional<QString>> readingToken = endpoint.credentials.googleAccessTokenStore.read();
    const std::optional<QString> accessToken = co_await std::move(readingToken);
    QCoro::Task<std::optional<QDateTime>> readingExpiry = endpoint.credentials.readGoogleAccessTokenExpiry();
    const std::optional<QDateTime> expiry = co_await std::move(readingExpiry);
    if (accessToken && expiry && endpoint.clock().secsTo(*expiry) > spentWithinSeconds) {
        co_return *accessToken;
    }
    QCoro::Task<QString> refreshing = refreshAccessToken(endpoint, clientID);
    co_return co_await std::move(refreshing);
}

QCoro::Task<> GoogleDriveAuthManager::signOut() {
    const QPointer<GoogleDriveAuthManager> self(this);
    QCoro::Task<> clearing = m_environment.credentials.clearGoogleTokens();
    co_await std::move(clearing);
    if (self) {
        self->setConnected(false);
    }
}

QCoro::Task<> GoogleDriveAuthManager::refreshConnectionState() {
    const QPointer<GoogleDriveAuthManager> self(this);
    const StorageCredentialStore credentials = m_environment.credentials;
    QCoro::Task<std::optional<QString>> readingRefresh = credentials.googleRefreshTokenStore.read();
    bool stored = (co_await std::move(readingRefresh)).has_value();
    if (!stored) {
        QCoro::Task<std::optional<QString>> readingAccess = credentials.googleAccessTokenStore.read();
        stored = (co_await std::move(readingAccess)).has_value();
    }
    if (self) {
        self->setConnected(stored);
    }
}

void GoogleDriveAuthManager::setConnected(bool connected) {
    if (m_connected == connected) {
        return;
    }
    m_connected = connected;
    emit connectedChanged();
}
