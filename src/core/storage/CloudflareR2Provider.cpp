#include "core/storage/CloudflareR2Provider.h"

#include "core/async/Background.h"
#include "core/storage/AWSV4Signer.h"
#include "core/storage/StorageProviderError.h"
#include "core/storage/StorageTransfer.h"
#include "core/support/FileInMemory.h"
#include "core/support/StrictUtf8.h"

#include <QCoreApplication>
#include <QFileInfo>
#include <QHash>
#include <QNetworkAccessManager>
#include <QUuid>

namespace {
// The characters a URL path keeps as they are besides letters, digits and "-._~".
const QByteArray pathCharacters = QByteArrayLiteral("!$&'()*+,/:=@");

QString encodedKey(const QString& key) {
    return QString::fromLatin1(QUrl::toPercentEncoding(key, pathCharacters));
}

QString endpointBase(const AppSettings& settings, const QString& accountID) {
    if (settings.cloudflareR2EndpointBaseURL) {
        return settings.cloudflareR2EndpointBaseURL->trimmed();
    }
    return QStringLiteral("https://") + accountID + QStringLiteral(".r2.cloudflarestorage.com");
}

QString message(const char* text) {
    return QCoreApplication::translate("CloudflareR2Provider", text);
}

// One PUT as it goes out: the file read whole, and the request signed over its digest.
struct SignedUpload {
    QNetworkRequest request;
    std::shared_ptr<const FileInMemory> payload;
};
} // namespace

CloudflareR2Provider::CloudflareR2Provider(const AppSettings& settings, const QString& accessKeyID,
                                           const QString& secretAccessKey, QNetworkAccessManager* session, Clock clock)
    : accountID(settings.cloudflareR2AccountID.trimmed())
    , bucket(settings.cloudflareR2Bucket.trimmed())
    , publicURLBase(settings.cloudflareR2PublicURLBase.trimmed())
    , accessKeyID(accessKeyID.trimmed())
    , secretAccessKey(secretAccessKey.trimmed())
    , endpointBaseURL(endpointBase(settings, this->accountID))
    , m_session(session)
    , m_clock(std::move(clock)) {}

QCoro::Task<std::shared_ptr<const ExternalStorageProvider>>
CloudflareR2Provider::make(AppSettings settings, StorageCredentialStore credentials, QNetworkAccessManager* session) {
    QCoro::Task<std::optional<QString>> readingKeyID = credentials.accessKeyStore.read();
    const std::optional<QString> keyID = co_await std::move(readingKeyID);
    QCoro::Task<std::optional<QString>> readingSecret = credentials.secretKeyStore.read();
    const std::optional<QString> secret = co_await std::move(readingSecret);
    std::shared_ptr<const ExternalStorageProvider> provider = std::make_shared<const CloudflareR2Provider>(
        settings, keyID.value_or(QString()), secret.value_or(QString()), session);
    co_return provider;
}

void CloudflareR2Provider::validateConfiguration() const {
    const char* missing = nullptr;
    if (accountID.isEmpty()) {
        missing = QT_TRANSLATE_NOOP("CloudflareR2Provider", "Cloudflare account ID is required.");
    } else if (bucket.isEmpty()) {
        missing = QT_TRANSLATE_NOOP("CloudflareR2Provider", "R2 bucket name is required.");
    } else if (publicURLBase.isEmpty()) {
        missing = QT_TRANSLATE_NOOP("CloudflareR2Provider", "Public URL base is required.");
    } else if (!QUrl(publicURLBase, QUrl::StrictMode).isValid()) {
        missing = QT_TRANSLATE_NOOP("CloudflareR2Provider", "Public URL base must be a valid URL.");
    } else if (accessKeyID.isEmpty()) {
        missing = QT_TRANSLATE_NOOP("CloudflareR2Provider", "R2 access key ID is required.");
    } else if (secretAccessKey.isEmpty()) {
        missing = QT_TRANSLATE_NOOP("CloudflareR2Provider", "R2 secret access key is required.");
    }
    if (missing) {
        throw StorageProviderError::missingConfiguration(message(missing));
    }
}

QCoro::Task<QUrl> CloudflareR2Provider::upload(QUrl fileURL, QString filename) const {
    validateConfiguration();
    const QString key = QUuid::createUuid().toString(QUuid::WithoutBraces).toUpper() + QLatin1Char('-') + filename;
    const QUrl endpoint(endpointBaseURL + QLatin1Char('/') + bucket + QLatin1Char('/') + encodedKey(key));
    // Reading and hashing a large file takes a while: not on the thread that draws the windows.
    std::function<SignedUpload()> sign = [path = fileURL.toLocalFile(), endpoint, keyID = accessKeyID,
                                          secret = secretAccessKey, type = contentType(filename), clock = m_clock] {
        std::shared_ptr<const FileInMemory> payload = FileInMemory::read(path);
        QNetworkRequest request = AWSV4Signer::signedPUT(endpoint, keyID, secret, payload->bytes(), type, clock);
        return SignedUpload{std::move(request), std::move(payload)};
    };
    QCoro::Task<SignedUpload> signing = runInBackground(std::move(sign));
    // The body is the memory the file was read into, which lives until the answer is in.
    const SignedUpload upload = co_await std::move(signing);
    QCoro::Task<StorageTransfer::Answer> sending =
        StorageTransfer::send(m_session, upload.request, QByteArrayLiteral("PUT"), upload.payload->bytes());
    const StorageTransfer::Answer answer = co_await std::move(sending);
    if (!answer.status) {
        throw StorageProviderError::invalidResponse();
    }
    if (!answer.succeeded()) {
        throw StorageProviderError::uploadFailed(failureMessage(*answer.status, answer.body));
    }
    co_return publicURL(key);
}

QUrl CloudflareR2Provider::publicURL(const QString& key) const {
    QString base = publicURLBase;
    if (base.endsWith(QLatin1Char('/'))) {
        base.chop(1);
    }
    return QUrl(base + QLatin1Char('/') + encodedKey(key));
}

QString CloudflareR2Provider::contentType(const QString& filename) {
    static const QHash<QString, QString> types{
        {QStringLiteral("png"), QStringLiteral("image/png")},
        {QStringLiteral("jpg"), QStringLiteral("image/jpeg")},
        {QStringLiteral("jpeg"), QStringLiteral("image/jpeg")},
        {QStringLiteral("gif"), QStringLiteral("image/gif")},
        {QStringLiteral("webp"), QStringLiteral("image/webp")},
        {QStringLiteral("mov"), QStringLiteral("video/quicktime")},
        {QStringLiteral("mp4"), QStringLiteral("video/mp4")},
        {QStringLiteral("m4v"), QStringLiteral("video/mp4")},
        {QStringLiteral("txt"), QStringLiteral("text/plain")},
        {QStringLiteral("pdf"), QStringLiteral("application/pdf")},
    };
    return types.value(QFileInfo(filename).suffix().toLower(), QStringLiteral("application/octet-stream"));
}

QString CloudflareR2Provider::failureMessage(int status, const QByteArray& body) {
    if (const std::optional<QString> text = strictUtf8(body)) {
        return *text;
    }
    return QCoreApplication::translate("CloudflareR2Provider", "R2 upload failed (HTTP %1).").arg(status);
}
