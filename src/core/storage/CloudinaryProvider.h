#pragma once

#include "core/settings/AppSettings.h"
#include "core/storage/ExternalStorageProvider.h"

#include <QByteArray>
#include <QNetworkAccessManager>
#include <QNetworkRequest>
#include <QPointer>
#include <QString>
#include <QUrl>
#include <memory>
#include <optional>

// Uploads to Cloudinary without a secret: an unsigned upload through the upload preset the user
// made at Cloudinary, to the "auto" resource type so that any file fits (Cloudinary tells image,
// video and raw files apart by itself). The file's address is the `secure_url` of the answer.
//
// The request is one multipart/form-data POST holding the whole file, built in memory.
class CloudinaryProvider : public ExternalStorageProvider {
public:
    // Cloudinary's REST API host, which the settings key `cloudinaryAPIBaseURL` replaces.
    static QUrl defaultAPIBaseURL();
    // How long the transfer may go without a byte moving before it fails.
    static constexpr int transferTimeoutMs = 60'000;

    // `session` sends the requests; an upload that begins after it is gone fails as cancelled.
    CloudinaryProvider(QString cloudName, QString uploadPreset, QNetworkAccessManager* session,
                       QUrl apiBaseURL = defaultAPIBaseURL());
    // The provider of the settings, whose texts are already trimmed.
    static std::shared_ptr<const CloudinaryProvider> fromSettings(const AppSettings& settings,
                                                                  QNetworkAccessManager* session);

    QString displayName() const override { return QStringLiteral("Cloudinary"); }
    // Throws missingConfiguration when the cloud name, then when the upload preset, is empty.
    void validateConfiguration() const override;
    // Throws FileError when the file can't be read, StorageTransferError when no answer came, and
    // otherwise what decodeResponse throws.
    QCoro::Task<QUrl> upload(QUrl fileURL, QString filename) const override;

    const QString& cloudName() const { return m_cloudName; }
    const QString& uploadPreset() const { return m_uploadPreset; }
    const QUrl& apiBaseURL() const { return m_apiBaseURL; }

    // The upload endpoint of a cloud: the base, then /v1_1/<cloud name>/auto/upload.
    static QUrl uploadURL(const QUrl& apiBaseURL, const QString& cloudName);
    // The POST of a body with this boundary.
    static QNetworkRequest uploadRequest(const QUrl& url, const QString& boundary);
    // The form: the field "upload_preset", then the part "file" with the file's bytes. The filename
    // goes into the part's header as it is, unescaped.
    static QByteArray multipartBody(const QString& boundary, const QString& uploadPreset, const QString& filename,
                                    const QByteArray& fileData);
    // The file's address from Cloudinary's answer. Throws uploadFailed for a status outside 200 to
    // 299, DecodingError for a 2xx body that isn't the upload's JSON, and invalidResponse when the
    // body has no usable `secure_url`.
    static QUrl decodeResponse(int status, const QByteArray& body);
    // The message of an error body: the error's message when the body is Cloudinary's error JSON
    // (absent when that has none), otherwise the body as text, or absent when it isn't UTF-8.
    static std::optional<QString> errorMessage(const QByteArray& body);

private:
    const QString m_cloudName;
    const QString m_uploadPreset;
    const QPointer<QNetworkAccessManager> m_session;
    const QUrl m_apiBaseURL;
};
