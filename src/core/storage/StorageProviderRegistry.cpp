#include "core/storage/StorageProviderRegistry.h"

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

QCoro::Task<StorageProviderRegistry::Provider> madeAlready(StorageProviderRegistry::Provider provider) {
    co_return provider;
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
    if (!factory) {
        m_factories.erase(kind);
        return;
    }
    m_factories[kind] = [factory = std::move(factory)](const AppSettings& settings) {
        return madeAlready(factory(settings));
    };
}

void StorageProviderRegistry::setFactory(StorageProviderKind kind, AsyncFactory factory) {
    m_factories[kind] = std::move(factory);
}

QCoro::Task<StorageProviderRegistry::Provider> StorageProviderRegistry::makeProvider(AppSettings settings) const {
    const StorageProviderKind kind = settings.storageProvider;
    if (kind == StorageProviderKind::norvane) {
        co_return Provider();
    }
    const auto found = m_factories.find(kind);
    if (found == m_factories.end() || !found->second) {
        co_return Provider();
    }
    QCoro::Task<Provider> making = found->second(trimmedTexts(std::move(settings)));
    co_return co_await std::move(making);
}
