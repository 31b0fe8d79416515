#pragma once

#include <QByteArray>
#include <QString>
#include <QUrl>

// The body of an attachment upload: multipart/form-data with one part named "attachment". The same
// bytes are built in memory for small files and written to a temporary file for large ones.
//
// The filename goes into the part's header as UTF-8 without any escaping, so a name holding a
// double quote makes a header the service may not read; that is the wire format as the service
// defines it.
namespace Multipart {

// Chunk size when copying a file into a body file.
constexpr qint64 chunkSize = 1'048'576;

// "norvanebar-" and a new UUID in upper case: a new one for every attempt.
QString newBoundary();

// The Content-Type of a body with this boundary.
QByteArray contentType(const QString& boundary);

// The whole body around `fileData`.
QByteArray multipartBody(const QString& boundary, const QString& filename, const QByteArray& fileData);

// Writes the body around the file at `fileURL` to a new file "norvanebar-upload-<UUID>.multipart" in
// the temporary directory, copying the file a chunk at a time, and returns its URL. Throws FileError;
// a failure leaves what was written in place.
QUrl writeMultipartBody(const QString& boundary, const QString& filename, const QUrl& fileURL);

} // namespace Multipart
