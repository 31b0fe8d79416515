#include "core/storage/BuiltInStorageProviders.h"

#include "core/storage/CloudflareR2Provider.h"
#include "core/storage/CloudinaryProvider.h"
#include "core/storage/GoogleDriveProvider.h"

namespace BuiltInStorageProviders {

void registerAll(StorageProviderRegistry& registry, Services services) {
    registry.setFactory(StorageProviderKind::cloudinary, [services](const AppSettings& settings) {
        return CloudinaryProvider::fromSettings(settings, services.session);
    });
    registry.setFactory(StorageProviderKind::cloudflareR2, [services](const AppSettings& settings) {
        return CloudflareR2Provider::make(settings, *services.credentials, services.session);
    });
    registry.setFactory(StorageProviderKind::googleDrive, [services](const AppSettings& settings) {
        return std::make_shared<GoogleDriveProvider>(settings.googleDriveFolderID, *services.googleAuth,
                                                     services.session, GoogleAddresses::from(settings));
    });
}

} // namespace BuiltInStorageProviders
