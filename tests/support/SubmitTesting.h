#pragma once

#include "core/compose/StagedAttachment.h"
#include "core/submit/ForegroundSubmitPhase.h"
#include "core/submit/SubmitJobPayload.h"
#include "support/TemporaryFolderTesting.h"

#include <QFileInfo>
#include <QJsonArray>
#include <QJsonObject>
#include <QList>
#include <QStringList>
#include <QUuid>
#include <memory>

// What tests of the submission pipeline share: pinned files, payloads, and the phases a job tells.
namespace SubmitTesting {

// A pinned copy as a job holds it: a new file in `folder` with its size and kind from the name.
inline StagedAttachment pinnedFile(const QString& folder, const QString& name, const QByteArray& bytes = "bytes") {
    const QString path = writtenFile(folder + QLatin1Char('/') + QStringLiteral("norvanebar-job-") +
                                         QUuid::createUuid().toString(QUuid::WithoutBraces) + QLatin1Char('-') + name,
                                     bytes);
    StagedAttachment attachment;
    attachment.id = QUuid::createUuid();
    attachment.fileURL = QUrl::fromLocalFile(path);
    attachment.filename = name;
    attachment.isImage = name.endsWith(QStringLiteral(".png"));
    attachment.isVideo = name.endsWith(QStringLiteral(".mov"));
    attachment.fileSizeBytes = bytes.size();
    return attachment;
}

inline bool exists(const StagedAttachment& attachment) {
    return QFileInfo::exists(attachment.fileURL.toLocalFile());
}

inline SubmitJobPayload payload(const QString& listID, const QString& name,
                                const QList<StagedAttachment>& attachments = {},
                                std::optional<QString> description = std::nullopt) {
    SubmitJobPayload payload;
    payload.listID = listID;
    payload.taskName = name;
    payload.request.name = name;
    payload.request.markdownDescription = std::move(description);
    payload.attachments = attachments;
    return payload;
}

// The POSTs of a sandbox's request log whose path ends so, in order.
inline QJsonArray postsEndingWith(const QJsonArray& log, const QString& ending) {
    QJsonArray found;
    for (const QJsonValue& entry : log) {
        if (entry[QStringLiteral("method")].toString() == QStringLiteral("POST") &&
            entry[QStringLiteral("path")].toString().endsWith(ending)) {
            found.append(entry);
        }
    }
    return found;
}

// A phase as a short text, so that sequences compare readably: "creating", "uploading 1/2",
// "done 1 failed", "failed <message>", "bulkCreating 1/3", "bulkDone 2 created 1 failed",
// "found <task name>".
QString describe(const ForegroundSubmitPhase& phase);

// Writes down the phases it is told; shared, so that a copy handed to a job records into the same
// list.
class PhaseRecorder {
public:
    PhaseHandler handler() const {
        return [phases = m_phases](const ForegroundSubmitPhase& phase) { phases->append(phase); };
    }
    const QList<ForegroundSubmitPhase>& phases() const { return *m_phases; }
    QStringList described() const {
        QStringList texts;
        for (const ForegroundSubmitPhase& phase : *m_phases) {
            texts.append(describe(phase));
        }
        return texts;
    }
    // The last phase, if it is of that kind.
    template <typename T> const T* last() const {
        return m_phases->isEmpty() ? nullptr : std::get_if<T>(&m_phases->last());
    }

private:
    std::shared_ptr<QList<ForegroundSubmitPhase>> m_phases = std::make_shared<QList<ForegroundSubmitPhase>>();
};

} // namespace SubmitTesting
