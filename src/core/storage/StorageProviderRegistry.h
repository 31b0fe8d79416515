#pragma once

#include "core/settings/AppSettings.h"
#include "core/settings/StorageProviderKind.h"
#include "core/storage/ExternalStorageProvider.h"

#include <QString>
#include <functional>
#include <map>
#include <memory>
#include <qcoro/qcorotask.h>

// Chooses where a job's attachments go, from the settings of the moment. Built once by the central
// state; each external kind is made by a factory registered for it, which captures what the provider
// needs besides the settings (stored credentials, the Google sign-in).
class StorageProviderRegistry {
public:
    using Provider = std::shared_ptr<const ExternalStorageProvider>;
    // Makes the provider of one kind from settings whose texts are already trimmed. Must not fail:
    // an incomplete configuration is found by validateConfiguration.
    using Factory = std::function<Provider(const AppSettings& settings)>;
    // The same for a kind whose provider needs what only a wait gives, such as keys in the keyring.
    using AsyncFactory = std::function<QCoro::Task<Provider>(const AppSettings& settings)>;

    // The name a kind's provider goes by in messages; empty for Norvane itself.
    static QString displayName(StorageProviderKind kind);

    // Replaces the factory of an external kind.
    void setFactory(StorageProviderKind kind, Factory factory);
    void setFactory(StorageProviderKind kind, AsyncFactory factory);

    // Null for `norvane`: attachments go to the service itself. Otherwise the kind's provider, made
    // from the settings with each text trimmed of white space at both ends. The program registers
    // every kind (BuiltInStorageProviders); a kind left without a factory, as in a registry made for
    // a test, has none. The registry may go while the provider is being made.
    QCoro::Task<Provider> makeProvider(AppSettings settings) const;

private:
    std::map<StorageProviderKind, AsyncFactory> m_factories;
};
