#pragma once

#include "sandbox/service/ServiceRequest.h"

#include <QString>

#include <optional>

// Receives the multipart body of an attachment upload and writes its part named "attachment" to
// a new file, a piece at a time as it arrives, so that a file of any size never sits in memory.
// The rest of the body is read to its end whatever happens, so that the answer reaches the client.
class AttachmentUpload {
public:
    enum class Problem { None, NotMultipart, Malformed, NoAttachmentPart, StorageFull, WriteFailed };

    struct Outcome {
        Problem problem = Problem::None;
        QString storedPath;
        QString filename;
        qint64 size = 0;
    };

    // `allowedBytes`: how much the workspace may still store; absent means no limit.
    AttachmentUpload(QString folder, std::optional<qint64> allowedBytes)
        : m_folder(std::move(folder))
        , m_allowedBytes(allowedBytes) {}

    Outcome receive(StreamedBody& body) const;

private:
    QString m_folder;
    std::optional<qint64> m_allowedBytes;
};
