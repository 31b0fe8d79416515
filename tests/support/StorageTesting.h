#pragma once

#include "core/settings/AppSettings.h"
#include "core/storage/StorageProviderError.h"

#include <QByteArray>
#include <QRandomGenerator>
#include <optional>

namespace StorageTesting {

// The StorageProviderError that the call throws, or nothing when it throws none.
template <typename Call> std::optional<StorageProviderError> failureOf(Call call) {
    try {
        call();
    } catch (const StorageProviderError& error) {
        return error;
    }
    return std::nullopt;
}

// Settings that choose Cloudflare R2 and give it all it needs besides the key pair.
inline AppSettings completeR2Settings() {
    AppSettings settings;
    settings.storageProvider = StorageProviderKind::cloudflareR2;
    settings.cloudflareR2AccountID = QStringLiteral("0123abcd");
    settings.cloudflareR2Bucket = QStringLiteral("team-files");
    settings.cloudflareR2PublicURLBase = QStringLiteral("https://files.example.com");
    return settings;
}

// Bytes that nothing on the way can compress, for files whose way to a provider and back is checked.
inline QByteArray randomBytes(qsizetype size) {
    QByteArray bytes(size, Qt::Uninitialized);
    for (char& byte : bytes) {
        byte = static_cast<char>(QRandomGenerator::global()->bounded(256));
    }
    return bytes;
}

} // namespace StorageTesting
