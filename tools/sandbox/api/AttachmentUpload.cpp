#include "sandbox/api/AttachmentUpload.h"

#include <QDir>
#include <QFile>
#include <QUuid>

AttachmentUpload::Outcome AttachmentUpload::receive(StreamedBody& body) const {
    Outcome outcome;
    if (!body.isMultipart()) {
        body.discard();
        outcome.problem = Problem::NotMultipart;
        return outcome;
    }
    QFile file;
    bool seenAttachment = false;
    const auto abandonFile = [&](Problem problem) {
        outcome.problem = problem;
        if (!file.fileName().isEmpty()) {
            file.remove();
        }
    };
    const bool wellFormed = body.readMultipart(
        [&](const MultipartPartHeader& header) {
            file.close();
            if (header.name != "attachment" || seenAttachment) {
                return true;
            }
            seenAttachment = true;
            outcome.filename =
                header.filename.isEmpty() ? QStringLiteral("attachment") : QString::fromUtf8(header.filename);
            file.setFileName(QDir(m_folder).filePath(QUuid::createUuid().toString(QUuid::WithoutBraces)));
            if (!file.open(QIODevice::WriteOnly)) {
                outcome.problem = Problem::WriteFailed;
            }
            return true;
        },
        [&](const char* data, size_t size) {
            if (!file.isOpen() || outcome.problem != Problem::None) {
                return true;
            }
            outcome.size += static_cast<qint64>(size);
            if (m_allowedBytes && outcome.size > *m_allowedBytes) {
                abandonFile(Problem::StorageFull);
            } else if (file.write(data, static_cast<qint64>(size)) != static_cast<qint64>(size)) {
                abandonFile(Problem::WriteFailed);
            }
            return true;
        });
    file.close();
    if (!wellFormed && outcome.problem == Problem::None) {
        body.discard();
        abandonFile(Problem::Malformed);
    } else if (!seenAttachment) {
        outcome.problem = Problem::NoAttachmentPart;
    }
    if (outcome.problem == Problem::None) {
        outcome.storedPath = file.fileName();
    }
    return outcome;
}
