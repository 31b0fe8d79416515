// Pasted data on any bytes: up to the first NUL a "text/uri-list", the rest encoded image bytes of
// "image/png". Staging never crashes, stages only files that exist, and uses the image only when the
// data has no local file URL, as a PNG written to the temporary directory (a private folder here,
// emptied after each input).
#include "core/compose/AttachmentStaging.h"

#include <QDir>
#include <QFileInfo>
#include <QImageReader>
#include <QMimeData>
#include <QTemporaryDir>
#include <cstdint>
#include <cstdlib>

namespace {
// The temporary directory for the whole run, removed at exit.
struct PrivateTemporaryDirectory {
    QTemporaryDir folder;
    PrivateTemporaryDirectory() { qputenv("TMPDIR", folder.path().toLocal8Bit()); }
};

void check(const QMimeData& data, const QList<StagedAttachment>& staged) {
    QList<QUrl> fileURLs;
    for (const QUrl& url : data.urls()) {
        if (url.isLocalFile()) {
            fileURLs.append(url);
        }
    }
    for (const StagedAttachment& attachment : staged) {
        const QFileInfo file(attachment.fileURL.toLocalFile());
        if (!file.exists()) {
            std::abort();
        }
        if (!fileURLs.isEmpty() && !fileURLs.contains(attachment.fileURL)) {
            std::abort(); // a file is staged where it lies, and then no image counts
        }
        if (fileURLs.isEmpty() &&
            (staged.size() != 1 || !attachment.isImage || file.absolutePath() != QDir::tempPath() ||
             QImageReader(file.filePath()).format() != "png")) {
            std::abort(); // the one image, written as PNG to the temporary directory
        }
    }
}
} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    static const PrivateTemporaryDirectory temporary;
    const QByteArray bytes(reinterpret_cast<const char*>(data), static_cast<qsizetype>(size));
    const qsizetype split = bytes.indexOf('\0');
    QMimeData pasted;
    pasted.setData(QStringLiteral("text/uri-list"), split < 0 ? bytes : bytes.left(split));
    if (split >= 0) {
        pasted.setData(QStringLiteral("image/png"), bytes.mid(split + 1));
    }
    check(pasted, AttachmentStaging::stage(pasted));
    QDir written(temporary.folder.path());
    for (const QString& name : written.entryList(QDir::Files)) {
        written.remove(name);
    }
    return 0;
}
