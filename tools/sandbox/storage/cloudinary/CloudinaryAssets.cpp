#include "sandbox/storage/cloudinary/CloudinaryAssets.h"

#include <QCryptographicHash>
#include <QDateTime>
#include <QFile>
#include <QFileInfo>
#include <QJsonArray>
#include <QRandomGenerator>
#include <QUuid>

namespace {

// What the "auto" resource type makes of a file, by its first bytes.
struct Kind {
    QString resourceType;
    std::optional<QString> format;
    QByteArray contentType;
};

Kind kindOf(const QByteArray& signature) {
    struct Known {
        QByteArray prefix;
        qsizetype offset;
        Kind kind;
    };
    static const std::vector<Known> known{
        {QByteArrayLiteral("\x89PNG\r\n\x1a\n"), 0, {QStringLiteral("image"), QStringLiteral("png"), "image/png"}},
        {QByteArrayLiteral("\xff\xd8\xff"), 0, {QStringLiteral("image"), QStringLiteral("jpg"), "image/jpeg"}},
        {QByteArrayLiteral("GIF8"), 0, {QStringLiteral("image"), QStringLiteral("gif"), "image/gif"}},
        {QByteArrayLiteral("WEBP"), 8, {QStringLiteral("image"), QStringLiteral("webp"), "image/webp"}},
        {QByteArrayLiteral("ftypqt"), 4, {QStringLiteral("video"), QStringLiteral("mov"), "video/quicktime"}},
        {QByteArrayLiteral("ftyp"), 4, {QStringLiteral("video"), QStringLiteral("mp4"), "video/mp4"}},
    };
    for (const Known& each : known) {
        if (signature.mid(each.offset, each.prefix.size()) == each.prefix) {
            return each.kind;
        }
    }
    return {QStringLiteral("raw"), std::nullopt, "application/octet-stream"};
}

// A public id as Cloudinary makes one for an upload that names none: 20 lower-case letters and digits.
QString randomPublicID() {
    static const QString alphabet = QStringLiteral("abcdefghijklmnopqrstuvwxyz0123456789");
    QString id;
    for (int index = 0; index < 20; ++index) {
        id.append(alphabet.at(QRandomGenerator::global()->bounded(static_cast<int>(alphabet.size()))));
    }
    return id;
}

QString hexID() {
    return QUuid::createUuid().toString(QUuid::Id128);
}

QString md5Of(const QString& path) {
    QFile file(path);
    QCryptographicHash hash(QCryptographicHash::Md5);
    if (file.open(QIODevice::ReadOnly)) {
        hash.addData(&file);
    }
    return QString::fromLatin1(hash.result().toHex());
}

} // namespace

QString CloudinaryAssets::Asset::deliveredName() const {
    return format ? publicID + QLatin1Char('.') + *format : publicID;
}

QString CloudinaryAssets::Asset::deliveryPath() const {
    return QStringLiteral("/%1/%2/upload/v%3/%4").arg(cloudName, resourceType).arg(version).arg(deliveredName());
}

QJsonObject CloudinaryAssets::Asset::toJson(const QString& base) const {
    const QString url = base + deliveryPath();
    QJsonObject answer{{QStringLiteral("asset_id"), hexID()},
                       {QStringLiteral("public_id"), publicID},
                       {QStringLiteral("version"), version},
                       {QStringLiteral("version_id"), hexID()},
                       {QStringLiteral("signature"), etag},
                       {QStringLiteral("resource_type"), resourceType},
                       {QStringLiteral("created_at"), createdAt},
                       {QStringLiteral("tags"), QJsonArray()},
                       {QStringLiteral("bytes"), bytes},
                       {QStringLiteral("type"), QStringLiteral("upload")},
                       {QStringLiteral("etag"), etag},
                       {QStringLiteral("placeholder"), false},
                       {QStringLiteral("url"), url},
                       {QStringLiteral("secure_url"), url},
                       {QStringLiteral("asset_folder"), QString()},
                       {QStringLiteral("display_name"), QFileInfo(originalFilename).completeBaseName()},
                       {QStringLiteral("original_filename"), QFileInfo(originalFilename).completeBaseName()}};
    if (format) {
        answer.insert(QStringLiteral("format"), *format);
    }
    return answer;
}

CloudinaryAssets::Asset CloudinaryAssets::add(const QString& cloudName, const CloudinaryForm::File& file) {
    const Kind kind = kindOf(file.signature);
    const QString suffix = QFileInfo(file.filename).suffix();
    const QDateTime now = QDateTime::currentDateTimeUtc();
    Asset asset{cloudName,
                kind.resourceType,
                kind.format || suffix.isEmpty() ? randomPublicID() : randomPublicID() + QLatin1Char('.') + suffix,
                kind.format,
                now.toSecsSinceEpoch(),
                file.storedPath,
                kind.contentType,
                file.filename,
                file.size,
                now.toString(Qt::ISODate),
                md5Of(file.storedPath)};
    std::lock_guard lock(m_mutex);
    m_assets.push_back(asset);
    return asset;
}

std::optional<CloudinaryAssets::Asset> CloudinaryAssets::find(const QString& cloudName, const QString& resourceType,
                                                              const QString& version,
                                                              const QString& deliveredName) const {
    std::lock_guard lock(m_mutex);
    for (const Asset& asset : m_assets) {
        if (asset.cloudName == cloudName && asset.resourceType == resourceType &&
            version == QStringLiteral("v%1").arg(asset.version) && asset.deliveredName() == deliveredName) {
            return asset;
        }
    }
    return std::nullopt;
}
