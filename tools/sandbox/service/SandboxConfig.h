#pragma once

#include <QJsonObject>

#include <atomic>
#include <optional>

// Settings that tests change while the sandbox runs (/_sandbox/config): {"storageQuotaBytes": N}
// limits the attachment bytes each workspace may hold; null lifts the limit.
class SandboxConfig {
public:
    explicit SandboxConfig(std::optional<qint64> storageQuota = std::nullopt)
        : m_initialQuota(storageQuota) {
        reset();
    }

    std::optional<qint64> storageQuota() const {
        const qint64 quota = m_storageQuota.load();
        return quota < 0 ? std::nullopt : std::optional(quota);
    }
    void setStorageQuota(std::optional<qint64> quota) { m_storageQuota = quota.value_or(-1); }
    void reset() { setStorageQuota(m_initialQuota); }

    QJsonObject toJson() const {
        const std::optional<qint64> quota = storageQuota();
        return {{QStringLiteral("storageQuotaBytes"), quota ? QJsonValue(*quota) : QJsonValue()}};
    }

private:
    std::optional<qint64> m_initialQuota;
    std::atomic<qint64> m_storageQuota{-1};
};
