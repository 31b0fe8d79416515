#pragma once

#include "core/settings/AppSettings.h"
#include "core/settings/StorageProviderKind.h"
#include "core/storage/ExternalStorageProvider.h"

#include <QString>
#include <functional>
#include <map>
#include <memory>

// Chooses where a job's attachments go, from the settings of the moment. Built once by the central
// state; each external kind is made by a factory registered for it, which captures what the provider
// needs besides the settings (stored credentials, the Google sign-in).
class StorageProviderRegistry {
public:
    // Makes the provider of one kind from settings whose texts are already trimmed. Must not fail:
    // an incomplete configuration is found by validateConfiguration.
    using Factory = std::function<std::shared_ptr<const ExternalStorageProvider>(const AppSettings& settings)>;

    // The name a kind's provider goes by in messages; empty for Norvane itself.
    static QString displayName(StorageProviderKind kind);

    // Replaces the factory of an external kind.
    void setFactory(StorageProviderKind kind, Factory factory);

    // Null for `norvane`: attachments go to the service itself. Otherwise the kind's provider, made
    // from the settings with each text trimmed of white space at both ends; a kind without a factory
    // gives a provider that refuses every upload, so the choice shows as failed uploads.
    std::shared_ptr<const ExternalStorageProvider> makeProvider(const AppSettings& settings) const;

private:
    std::map<StorageProviderKind, Factory> m_factories;
};
