#pragma once

#include <QString>
#include <QUrl>
#include <QUuid>
#include <optional>

// One file on its way to a task: dropped, pasted, captured or recorded.
struct StagedAttachment {
    // New for each staged record; a pinned copy gets its own.
    QUuid id;
    // A local file URL: where the bytes are.
    QUrl fileURL;
    // The name shown and sent to the service or a storage provider.
    QString filename;
    // An image by extension, or made from an image.
    bool isImage = false;
    // A video by extension, or a recording.
    bool isVideo = false;
    // The size as staged; absent for images staged from memory.
    std::optional<qint64> fileSizeBytes;
    // Recordings only.
    std::optional<double> durationSeconds;

    bool operator==(const StagedAttachment&) const = default;
};
