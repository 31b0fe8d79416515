#include "core/storage/GoogleDriveAuthError.h"

#include "core/support/Overloaded.h"

#include <QCoreApplication>

GoogleDriveAuthError::GoogleDriveAuthError(Case failure)
    : m_failure(std::move(failure))
    , m_what(errorDescription().toUtf8()) {}

QString GoogleDriveAuthError::errorDescription() const {
    return std::visit(
        Overloaded{
            [](const AuthorizationFailed& failure) { return failure.message; },
            [](const TokenExchangeFailed& failure) {
                return QCoreApplication::translate("GoogleDriveAuthError", "Google sign-in failed: ") + failure.message;
            },
            [](const MissingClientID&) {
                return QCoreApplication::translate("GoogleDriveAuthError",
                                                   "Google OAuth client ID is not configured for this build.");
            },
            [](const NotSignedIn&) {
                return QCoreApplication::translate("GoogleDriveAuthError", "Sign in with Google to connect Drive.");
            },
        },
        m_failure);
}
