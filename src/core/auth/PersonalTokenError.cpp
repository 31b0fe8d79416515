#include "core/auth/PersonalTokenError.h"

#include <QCoreApplication>

PersonalTokenError::PersonalTokenError(Case failure)
    : m_failure(std::move(failure))
    , m_what(errorDescription().toUtf8()) {}

QString PersonalTokenError::errorDescription() const {
    if (const auto* keychain = std::get_if<KeychainFailed>(&m_failure)) {
        return keychain->underlyingDescription;
    }
    return QCoreApplication::translate("PersonalTokenError",
                                       "That doesn't look like a Norvane personal API token. Copy the full token "
                                       "from Norvane → Settings → Apps (it starts with pk_).");
}
