#pragma once

#include "core/async/Clock.h"
#include "core/auth/StorageCredentialStore.h"
#include "core/settings/AppSettings.h"
#include "core/storage/ExternalStorageProvider.h"

#include <QByteArray>
#include <QString>
#include <QUrl>
#include <memory>

class QNetworkAccessManager;

// Puts a file into a Cloudflare R2 bucket through R2's S3 API, in one signed PUT under a fresh key
// ("<UUID>-<file name>", so nothing is overwritten), and gives its address under the bucket's public
// URL base. The whole file is read into memory, as the signature needs its digest first.
class CloudflareR2Provider : public ExternalStorageProvider {
public:
    // Every text is trimmed of white space and newlines at both ends. The session must outlive every
    // upload.
    CloudflareR2Provider(const AppSettings& settings, const QString& accessKeyID, const QString& secretAccessKey,
                         QNetworkAccessManager* session, Clock clock = Clocks::system());

    // The provider of the settings with the key pair stored in `credentials`, the key id read first;
    // an item that isn't stored gives an empty text.
    static QCoro::Task<std::shared_ptr<const ExternalStorageProvider>>
    make(AppSettings settings, StorageCredentialStore credentials, QNetworkAccessManager* session);

    const QString accountID;
    const QString bucket;
    const QString publicURLBase;
    const QString accessKeyID;
    const QString secretAccessKey;
    // Where the S3 API is reached: https://<accountID>.r2.cloudflarestorage.com, or the base the
    // settings name instead.
    const QString endpointBaseURL;

    QString displayName() const override { return QStringLiteral("Cloudflare R2"); }
    // Throws StorageProviderError::missingConfiguration for the first of: no account id, no bucket,
    // no public URL base, a base that isn't a URL, no access key id, no secret.
    void validateConfiguration() const override;
    // Refusals of R2 are uploadFailed with the body of the answer as the message.
    QCoro::Task<QUrl> upload(QUrl fileURL, QString filename) const override;

    // The public URL base without one trailing "/", then "/" and the key percent-encoded.
    QUrl publicURL(const QString& key) const;
    // The type of the file name's extension, in any case; "application/octet-stream" for others.
    static QString contentType(const QString& filename);
    // What a refused upload says: the body as UTF-8 text, even empty; for a body that isn't UTF-8,
    // "R2 upload failed (HTTP <status>).".
    static QString failureMessage(int status, const QByteArray& body);

private:
    QNetworkAccessManager* const m_session;
    const Clock m_clock;
};
