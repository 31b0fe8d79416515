#pragma once

#include <QImage>
#include <QList>
#include <QUrl>
#include <optional>

class QMimeData;

// What pasted or dropped data offers as attachments, read on the thread that owns the data so that
// staging can go on elsewhere. Local file URLs win: with at least one, the image is not read.
struct PasteboardContents {
    // The local file URLs, in order, whether their files exist or not.
    QList<QUrl> fileURLs;
    // Read only when there is no file URL; never a null image.
    std::optional<QImage> image;

    bool isEmpty() const { return fileURLs.isEmpty() && !image; }

    static PasteboardContents read(const QMimeData& data);

    bool operator==(const PasteboardContents&) const = default;
};
