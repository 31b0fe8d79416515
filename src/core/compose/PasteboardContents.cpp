#include "core/compose/PasteboardContents.h"

#include <QMimeData>

namespace {
// Data from the window system converts its image types into a QImage itself; data built by hand,
// such as a drop passed on from a view, carries only the encoded bytes, which are tried in the
// order the data lists its types.
std::optional<QImage> readImage(const QMimeData& data) {
    const QVariant converted = data.imageData();
    if (converted.metaType() == QMetaType::fromType<QImage>() && !converted.value<QImage>().isNull()) {
        return converted.value<QImage>();
    }
    for (const QString& type : data.formats()) {
        if (!type.startsWith(QLatin1String("image/"))) {
            continue;
        }
        const QImage image = QImage::fromData(data.data(type));
        if (!image.isNull()) {
            return image;
        }
    }
    return std::nullopt;
}

QList<QUrl> localFileURLs(const QMimeData& data) {
    QList<QUrl> urls = data.urls();
    urls.removeIf([](const QUrl& url) { return !url.isLocalFile(); });
    return urls;
}
} // namespace

PasteboardContents PasteboardContents::read(const QMimeData& data) {
    PasteboardContents contents;
    contents.fileURLs = localFileURLs(data);
    if (contents.fileURLs.isEmpty()) {
        contents.image = readImage(data);
    }
    return contents;
}

PasteboardContents PasteboardContents::readDropped(const QMimeData& data) {
    return {localFileURLs(data), readImage(data)};
}
