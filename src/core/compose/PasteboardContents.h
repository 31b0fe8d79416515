#pragma once

#include <QImage>
#include <QList>
#include <QUrl>
#include <optional>

class QMimeData;

// What pasted or dropped data offers as attachments, read on the thread that owns the data so that
// staging can go on elsewhere.
struct PasteboardContents {
    // The local file URLs, in order, whether their files exist or not.
    QList<QUrl> fileURLs;
    // Never a null image.
    std::optional<QImage> image;

    bool isEmpty() const { return fileURLs.isEmpty() && !image; }

    // Pasted data: local file URLs win, and with at least one the image is not read.
    static PasteboardContents read(const QMimeData& data);
    // Dropped data: each file and the image are items of their own, so both are read.
    static PasteboardContents readDropped(const QMimeData& data);

    bool operator==(const PasteboardContents&) const = default;
};
