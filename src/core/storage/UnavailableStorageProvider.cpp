#include "core/storage/UnavailableStorageProvider.h"

#include "core/storage/StorageProviderError.h"

#include <QCoreApplication>

void UnavailableStorageProvider::validateConfiguration() const {
    throw StorageProviderError::missingConfiguration(
        QCoreApplication::translate("UnavailableStorageProvider",
                                    "Uploads to %1 aren't available in this version of NorvaneBar. Choose "
                                    "Norvane as the storage provider in Settings.")
            .arg(m_displayName));
}

QCoro::Task<QUrl> UnavailableStorageProvider::upload(QUrl /*fileURL*/, QString /*filename*/) const {
    validateConfiguration();
    co_return QUrl();
}
