#pragma once

#include <QByteArray>
#include <QString>
#include <exception>
#include <variant>

// Every way signing in to Google, or getting a valid token, fails, with the text the user sees.
class GoogleDriveAuthError : public std::exception {
public:
    // The sign-in in the browser didn't give a code; the message says why.
    struct AuthorizationFailed {
        QString message;
        bool operator==(const AuthorizationFailed&) const = default;
    };
    // Google's token endpoint refused; the message is its own.
    struct TokenExchangeFailed {
        QString message;
        bool operator==(const TokenExchangeFailed&) const = default;
    };
    // This build has no OAuth client id.
    struct MissingClientID {
        bool operator==(const MissingClientID&) const = default;
    };
    // No token is stored.
    struct NotSignedIn {
        bool operator==(const NotSignedIn&) const = default;
    };

    using Case = std::variant<AuthorizationFailed, TokenExchangeFailed, MissingClientID, NotSignedIn>;

    explicit GoogleDriveAuthError(Case failure);
    static GoogleDriveAuthError authorizationFailed(QString message) {
        return GoogleDriveAuthError(AuthorizationFailed{std::move(message)});
    }
    static GoogleDriveAuthError tokenExchangeFailed(QString message) {
        return GoogleDriveAuthError(TokenExchangeFailed{std::move(message)});
    }

    const Case& failure() const { return m_failure; }
    template <typename T> bool is() const { return std::holds_alternative<T>(m_failure); }

    // What the user is shown.
    QString errorDescription() const;
    const char* what() const noexcept override { return m_what.constData(); }

private:
    Case m_failure;
    QByteArray m_what;
};
