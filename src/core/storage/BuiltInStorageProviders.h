#pragma once

#include "core/auth/StorageCredentialStore.h"
#include "core/storage/GoogleDriveAuthManager.h"
#include "core/storage/StorageProviderRegistry.h"

#include <QNetworkAccessManager>

// The external providers NorvaneBar ships: Cloudinary, Cloudflare R2 and Google Drive, each made
// from the settings of the moment and what it needs besides them.
namespace BuiltInStorageProviders {

// What the providers need besides the settings; all of it must outlive the registry.
struct Services {
    // The session the files go through: one that writes large bodies in large pieces.
    QNetworkAccessManager* session = nullptr;
    const StorageCredentialStore* credentials = nullptr;
    GoogleDriveAuthManager* googleAuth = nullptr;
};

// Gives each external kind of `registry` the factory of its provider.
void registerAll(StorageProviderRegistry& registry, Services services);

} // namespace BuiltInStorageProviders
