#pragma once

#include "core/storage/GoogleDriveAuthManager.h"
#include "support/MemorySecretStore.h"
#include "support/SandboxBrowser.h"
#include "support/SandboxProcess.h"
#include "support/SyncHttpClient.h"

#include <QDateTime>
#include <QJsonArray>
#include <QJsonDocument>
#include <QNetworkAccessManager>
#include <memory>

// A Google sign-in against the sandbox's stand-ins of Google: tokens in memory, a browser that
// agrees on the sandbox's sign-in page and hands the callback to the manager, and the sandbox's
// Google state, read and set through /_sandbox/google.
class GoogleSandboxFixture {
public:
    static constexpr auto clientID = "norvanebar-sandbox.apps.googleusercontent.com";

    explicit GoogleSandboxFixture(SandboxProcess& sandbox,
                                  std::optional<QString> client = QString::fromLatin1(clientID),
                                  Clock clock = Clocks::system())
        : m_sandbox(sandbox)
        , m_credentials(&m_secrets)
        , m_auth(std::make_unique<GoogleDriveAuthManager>(
              GoogleDriveAuthManager::Environment{.credentials = m_credentials,
                                                  .session = &m_network,
                                                  .addresses = addresses(sandbox),
                                                  .clientID = std::move(client),
                                                  .browser = &m_browser,
                                                  .clock = std::move(clock)})) {}

    // Every Google address at the sandbox.
    static GoogleAddresses addresses(const SandboxProcess& sandbox) {
        const QUrl base = sandbox.webUrl(u"/google");
        return {base, base, base, base, base};
    }

    // The sandbox's data, rules, log and Google state as at its start.
    static bool startAfresh(SandboxProcess& sandbox) {
        SyncHttpClient client;
        return sandbox.reset() && client.send("DELETE", sandbox.webUrl(u"/_sandbox/google")).status == 200;
    }

    // What this fixture's manager is made of, with another browser: one that answers nothing, say.
    GoogleDriveAuthManager::Environment environmentWith(LinkActions& browser) {
        return {.credentials = m_credentials,
                .session = &m_network,
                .addresses = addresses(m_sandbox),
                .clientID = QString::fromLatin1(clientID),
                .browser = &browser};
    }

    GoogleDriveAuthManager& auth() { return *m_auth; }
    const StorageCredentialStore& credentials() const { return m_credentials; }
    MemorySecretStore& secrets() { return m_secrets; }
    SandboxBrowser& browser() { return m_browser; }
    QNetworkAccessManager* network() { return &m_network; }

    std::optional<QString> item(const char* account) const {
        const auto value = m_secrets.item(KeychainStore::appService, QLatin1String(account));
        return value ? std::optional(QString::fromUtf8(*value)) : std::nullopt;
    }
    void setItem(const char* account, const QString& value) {
        m_secrets.setItem(KeychainStore::appService, QLatin1String(account), value.toUtf8());
    }
    // Stores tokens as a sign-in would, the access token living `seconds` more.
    void storeTokens(const QString& access, const QString& refresh, qint64 seconds) {
        setItem("google-drive-access-token", access);
        setItem("google-drive-refresh-token", refresh);
        setItem("google-drive-access-token-expiry", QString::number(QDateTime::currentSecsSinceEpoch() + seconds));
    }

    // The sandbox's Google state (see /_sandbox/google), after `change` when one is given.
    QJsonObject google(const QJsonObject& change = {}) {
        SyncHttpClient client;
        const QUrl url = m_sandbox.webUrl(u"/_sandbox/google");
        const HttpResult result = change.isEmpty() ? client.get(url)
                                                   : client.send("POST", url, {{"Content-Type", "application/json"}},
                                                                 QJsonDocument(change).toJson());
        return result.json();
    }
    bool revokeGrants() {
        SyncHttpClient client;
        return client.send("POST", m_sandbox.webUrl(u"/_sandbox/google/revoke")).status == 200;
    }
    // The requests the sandbox logged at `path` since `since`.
    QJsonArray requestsTo(const QString& path, qint64 since = 0) {
        QJsonArray found;
        for (const QJsonValue request : m_sandbox.requests(since)) {
            if (request[QStringLiteral("path")].toString() == path) {
                found.append(request);
            }
        }
        return found;
    }

private:
    SandboxProcess& m_sandbox;
    MemorySecretStore m_secrets;
    StorageCredentialStore m_credentials;
    QNetworkAccessManager m_network;
    std::unique_ptr<GoogleDriveAuthManager> m_auth;
    SandboxBrowser m_browser{[this](const QUrl& callback) { m_auth->handleCallback(callback); }};
};
