#pragma once

#include "core/storage/ExternalStorageProvider.h"

#include <QUrl>

class QNetworkAccessManager;

// An external provider that keeps the contract over real HTTP: it PUTs each file to a
// LoopbackStorageServer and gives the address the server answers with. A base that isn't an HTTP
// URL is a missing configuration; a refusal is uploadFailed with the server's status and text; an
// answer without an address is invalidResponse.
class LoopbackStorageProvider : public ExternalStorageProvider {
public:
    LoopbackStorageProvider(QNetworkAccessManager* session, QUrl baseUrl)
        : m_session(session)
        , m_baseUrl(std::move(baseUrl)) {}

    QString displayName() const override { return QStringLiteral("Loopback Storage"); }
    void validateConfiguration() const override;
    QCoro::Task<QUrl> upload(QUrl fileURL, QString filename) const override;

private:
    QNetworkAccessManager* const m_session;
    const QUrl m_baseUrl;
};
