#pragma once

#include "sandbox/service/ServiceRequest.h"

#include <QByteArray>
#include <QList>
#include <QPair>
#include <QString>

#include <optional>

// The multipart/form-data body of an upload to Cloudinary as it arrives: its text fields in order,
// and its part named "file" written to a new file a piece at a time. The rest of the body is read to
// its end whatever happens, so that the answer reaches the client.
class CloudinaryForm {
public:
    enum class Problem { None, Malformed, WriteFailed };

    // The longest text field kept; a longer one makes the body malformed.
    static constexpr qsizetype maximumFieldSize = 64 * 1024;
    // How many of the file's first bytes are kept, to tell its kind.
    static constexpr qsizetype signatureSize = 16;

    struct File {
        QString storedPath;
        QString filename;
        qint64 size = 0;
        QByteArray signature;
    };

    Problem problem = Problem::None;
    QList<QPair<QByteArray, QByteArray>> fields;
    std::optional<File> file;

    // Reads the body; a body that isn't multipart has neither fields nor file.
    static CloudinaryForm receive(StreamedBody& body, const QString& folder);
    // The value of the first text field of that name.
    std::optional<QByteArray> field(QByteArrayView name) const;
};
