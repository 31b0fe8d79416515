#include "core/api/Multipart.h"

#include "core/support/FileError.h"
#include "core/support/GeneratedNames.h"

#include <QFile>
#include <memory>

namespace {
QByteArray head(const QString& boundary, const QString& filename) {
    return "--" + boundary.toUtf8() + "\r\n" + "Content-Disposition: form-data; name=\"attachment\"; filename=\"" +
           filename.toUtf8() + "\"\r\n" + "Content-Type: application/octet-stream\r\n\r\n";
}

QByteArray tail(const QString& boundary) {
    return "\r\n--" + boundary.toUtf8() + "--\r\n";
}

void write(QFile& file, const QByteArray& bytes) {
    if (file.write(bytes) != bytes.size()) {
        throw FileError(file.fileName(), file.errorString());
    }
}

std::unique_ptr<QFile> opened(const QString& path, QIODevice::OpenMode mode) {
    // Unbuffered: the copy's own chunk is the only one held in memory.
    auto file = std::make_unique<QFile>(path);
    if (!file->open(mode | QIODevice::Unbuffered)) {
        throw FileError(path, file->errorString());
    }
    return file;
}
} // namespace

QString Multipart::newBoundary() {
    return QStringLiteral("norvanebar-") + upperCaseUuid();
}

QByteArray Multipart::contentType(const QString& boundary) {
    return "multipart/form-data; boundary=" + boundary.toUtf8();
}

QByteArray Multipart::multipartBody(const QString& boundary, const QString& filename, const QByteArray& fileData) {
    return head(boundary, filename) + fileData + tail(boundary);
}

QUrl Multipart::writeMultipartBody(const QString& boundary, const QString& filename, const QUrl& fileURL) {
    const QString bodyPath = temporaryPath(QStringLiteral("norvanebar-upload-%1.multipart").arg(upperCaseUuid()));
    const auto body = opened(bodyPath, QIODevice::WriteOnly | QIODevice::NewOnly);
    write(*body, head(boundary, filename));
    const auto source = opened(fileURL.toLocalFile(), QIODevice::ReadOnly);
    QByteArray chunk(chunkSize, Qt::Uninitialized);
    for (;;) {
        const qint64 count = source->read(chunk.data(), chunkSize);
        if (count < 0) {
            throw FileError(source->fileName(), source->errorString());
        }
        if (count == 0) {
            break;
        }
        write(*body, QByteArray::fromRawData(chunk.constData(), count));
    }
    write(*body, tail(boundary));
    return QUrl::fromLocalFile(bodyPath);
}
