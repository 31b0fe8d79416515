#pragma once

#include <QByteArray>
#include <QJsonObject>
#include <QMap>
#include <QString>
#include <QStringList>

#include <mutex>
#include <optional>

// What the stand-ins of Google's sign-in and of Drive remember: the registered client, the codes
// given out, the grants with their tokens, the files uploaded and the behaviour tests choose. The
// routes share one under a lock (LockedGoogleSandbox).
struct GoogleSandbox {
    // The client id the sandbox knows unless a test registers another.
    static inline const QString defaultClientID = QStringLiteral("norvanebar-sandbox.apps.googleusercontent.com");
    // The one redirect address the client is registered with.
    static inline const QString redirectURI = QStringLiteral("com.norvanebar.app:/oauth/google");
    static inline const QString driveFileScope = QStringLiteral("https://www.googleapis.com/auth/drive.file");

    // How the authorization page answers: with a code, with error=access_denied, or with a code and
    // a state other than the one asked with.
    enum class Authorization { grant, deny, wrongState };

    struct Code {
        QString clientID;
        QString redirectURI;
        QString challenge;
    };
    struct Grant {
        QString clientID;
        bool revoked = false;
    };
    struct AccessToken {
        QString refreshToken;
        qint64 expiresAtMs = 0;
    };
    struct File {
        QString name;
        QStringList parents;
        QByteArray content;
        QString refreshToken;
        bool shared = false;
    };

    // A fresh random id of letters and digits.
    static QString newID(int length);

    // The grant behind a bearer token that is known, unrevoked and unexpired.
    std::optional<QString> grantOf(const QByteArray& authorization, qint64 nowMs) const;
    // Issues an access token of the grant, living accessTokenSeconds.
    QString issueAccessToken(const QString& refreshToken, qint64 nowMs);

    // The settings and what was received, for GET /_sandbox/google.
    QJsonObject toJson() const;
    // Applies {"clientID", "authorization", "webViewLink", "accessTokenSeconds", "rotateRefreshTokens"};
    // the problem when a value is wrong.
    std::optional<QString> configure(const QJsonObject& settings);
    void revokeGrants();

    QString clientID = defaultClientID;
    Authorization authorization = Authorization::grant;
    bool webViewLink = true;
    qint64 accessTokenSeconds = 3599;
    bool rotateRefreshTokens = false;
    QMap<QString, Code> codes;
    QMap<QString, Grant> grants;
    QMap<QString, AccessToken> accessTokens;
    QMap<QString, File> files;
};

// The one state of the routes, for the threads of the server.
class LockedGoogleSandbox {
public:
    // Runs `work` on the state under the lock.
    template <typename Work> auto with(Work work) {
        const std::lock_guard lock(m_mutex);
        return work(m_state);
    }

private:
    std::mutex m_mutex;
    GoogleSandbox m_state;
};
