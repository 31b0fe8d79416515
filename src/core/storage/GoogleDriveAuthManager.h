#pragma once

#include "core/async/Clock.h"
#include "core/async/OneShot.h"
#include "core/auth/StorageCredentialStore.h"
#include "core/platform/CallbackScheme.h"
#include "core/platform/LinkActions.h"
#include "core/storage/GoogleAddresses.h"

#include <QNetworkAccessManager>
#include <QObject>
#include <QString>
#include <QUrl>
#include <optional>
#include <qcoro/qcorotask.h>

// Signs the user in to Google with OAuth 2.0 for native applications: an authorization code with
// PKCE, asked for in the default browser, which sends the answer to the program's own URL scheme.
// Keeps the tokens in the storage credentials and hands out a valid access token, refreshed when
// needed. One instance serves the program; main thread only.
//
// The browser never reports a cancel: while a sign-in waits for its answer (waitingForBrowser), the
// user can end it with cancelSignIn(). The answer arrives through handleCallback(), which the desktop
// calls with the address a later launch of the program was started with.
class GoogleDriveAuthManager : public QObject {
    Q_OBJECT
    Q_PROPERTY(bool connected READ isConnected NOTIFY connectedChanged)
    Q_PROPERTY(bool waitingForBrowser READ isWaitingForBrowser NOTIFY waitingForBrowserChanged)

public:
    // Where Google sends the browser when the user has answered.
    static const QString redirectURI;
    // The Drive scope that sees only the files this program made.
    static const QString scope;
    // The scheme of redirectURI.
    static QString callbackScheme();

    // What the manager works with. The session, the browser and the scheme registration must outlive
    // it; with no scheme registration, the desktop needs none.
    struct Environment {
        StorageCredentialStore credentials;
        QNetworkAccessManager* session = nullptr;
        GoogleAddresses addresses;
        std::optional<QString> clientID;
        LinkActions* browser = nullptr;
        CallbackScheme* scheme = nullptr;
        Clock clock = Clocks::system();
    };

    explicit GoogleDriveAuthManager(Environment environment, QObject* parent = nullptr);

    const StorageCredentialStore& credentials() const { return m_environment.credentials; }

    // Opens Google's sign-in page in the browser, waits for its answer, exchanges the code for tokens
    // and stores them, replacing those stored before. Throws GoogleDriveAuthError; errors of the
    // network, of the keychain and a token answer that can't be read pass on as they are.
    QCoro::Task<> signIn();
    // The stored access token while it has more than 60 seconds to live, else a refreshed one.
    // Throws as signIn does; without a refresh token, notSignedIn.
    QCoro::Task<QString> validAccessToken();

    // Hands the browser's answer to the sign-in that waits for it; false when none waits or the
    // address isn't of the callback scheme.
    bool handleCallback(const QUrl& url);
    // Ends the waiting sign-in with "Sign-in was cancelled.".
    void cancelSignIn();
    // Forgets the stored tokens.
    QCoro::Task<> signOut();
    // Reads again whether a refresh token or an access token is stored.
    QCoro::Task<> refreshConnectionState();

    // Whether tokens were stored when last looked at: after a sign-in, a sign-out or a refresh of
    // the connection state.
    bool isConnected() const { return m_connected; }
    bool isWaitingForBrowser() const { return m_waiting.has_value(); }

signals:
    void connectedChanged();
    void waitingForBrowserChanged();

private:
    // The browser's answer, or absent when the user cancelled.
    using Answer = OneShot<std::optional<QUrl>>;

    // Opens `url` in the browser and waits for the address it comes back with.
    QCoro::Task<QUrl> presentAuthSession(QUrl url);
    void endWaiting(std::optional<QUrl> answer);
    void setConnected(bool connected);

    const Environment m_environment;
    std::optional<Answer> m_waiting;
    bool m_connected = false;
};
