#include "core/storage/StorageProviderRegistry.h"

#include "core/storage/UnavailableStorageProvider.h"

#include <QCoreApplication>

namespace {
// The settings as the providers see them: every text of a provider trimmed once, here.
AppSettings trimmedTexts(AppSettings settings) {
    for (QString* text :
         {&settings.cloudinaryCloudName, &settings.cloudinaryUploadPreset, &settings.cloudflareR2AccountID,
          &settings.cloudflareR2Bucket, &settings.cloudflareR2PublicURLBase, &settings.googleDriveFolderID}) {
        *text = text->trimmed();
    }
    return settings;
}
} // namespace

QString StorageProviderRegistry::displayName(StorageProviderKind kind) {
    switch (kind) {
    case StorageProviderKind::norvane:
        return {};
    case StorageProviderKind::cloudinary:
        return QStringLiteral("Cloudinary");
    case StorageProviderKind::cloudflareR2:
        return QStringLiteral("Cloudflare R2");
    case StorageProviderKind::googleDrive:
        return QStringLiteral("Google Drive");
    }
    return {};
}

void StorageProviderRegistry::setFactory(StorageProviderKind kind, Factory factory) {
    m_factories[kind] = std::move(factory);
}

std::shared_ptr<const ExternalStorageProvider>
StorageProviderRegistry::makeProvider(const AppSettings& settings) const {
    const StorageProviderKind kind = settings.storageProvider;
    if (kind == StorageProviderKind::norvane) {
        return nullptr;
    }
    const auto found = m_factories.find(kind);
    if (found == m_factories.end() || !found->second) {
        return std::make_shared<UnavailableStorageProvider>(displayName(kind));
    }
    return found->second(trimmedTexts(settings));
}
