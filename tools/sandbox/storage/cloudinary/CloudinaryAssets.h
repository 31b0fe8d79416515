#pragma once

#include "sandbox/storage/cloudinary/CloudinaryForm.h"

#include <QJsonObject>
#include <QString>

#include <mutex>
#include <optional>
#include <vector>

// The files uploaded to the sandbox's Cloudinary, each delivered at the address its upload answered
// with: <base>/<cloud name>/<resource type>/upload/v<version>/<public id>[.<format>].
class CloudinaryAssets {
public:
    struct Asset {
        QString cloudName;
        // "image", "video" or "raw": what the "auto" type makes of the file's first bytes.
        QString resourceType;
        QString publicID;
        // The extension of an image or a video; a raw file's public id keeps its own instead.
        std::optional<QString> format;
        qint64 version = 0;
        QString storedPath;
        QByteArray contentType;
        QString originalFilename;
        qint64 bytes = 0;
        QString createdAt;
        QString etag;

        // The last segment of the delivery path.
        QString deliveredName() const;
        QString deliveryPath() const;
        // The upload's answer as Cloudinary documents it, with its addresses under `base`.
        QJsonObject toJson(const QString& base) const;
    };

    // Keeps a received file as a new asset of the cloud.
    Asset add(const QString& cloudName, const CloudinaryForm::File& file);
    // The asset at a delivery path's segments after the cloud name and type: "upload", "v<version>",
    // the delivered name.
    std::optional<Asset> find(const QString& cloudName, const QString& resourceType, const QString& version,
                              const QString& deliveredName) const;

private:
    mutable std::mutex m_mutex;
    std::vector<Asset> m_assets;
};
