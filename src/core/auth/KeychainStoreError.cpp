#include "core/auth/KeychainStoreError.h"

#include <QCoreApplication>

KeychainStoreError::KeychainStoreError(Case failure)
    : m_failure(failure)
    , m_what(errorDescription().toUtf8()) {}

QString KeychainStoreError::errorDescription() const {
    const qint32 status = std::get<WriteFailed>(m_failure).status;
    return QCoreApplication::translate("KeychainStoreError",
                                       "Couldn't save your API token to the system keyring (error %1).")
        .arg(status);
}
