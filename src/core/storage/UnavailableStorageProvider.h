#pragma once

#include "core/storage/ExternalStorageProvider.h"

// Stands for a provider kind that this build can't upload to: every check and every upload fails
// with a missing configuration that names the provider, so a job reports failed uploads instead of
// sending its files anywhere else.
class UnavailableStorageProvider : public ExternalStorageProvider {
public:
    explicit UnavailableStorageProvider(QString displayName)
        : m_displayName(std::move(displayName)) {}

    QString displayName() const override { return m_displayName; }
    void validateConfiguration() const override;
    QCoro::Task<QUrl> upload(QUrl fileURL, QString filename) const override;

private:
    const QString m_displayName;
};
