#include "core/submit/DraftSnapshot.h"

#include "core/compose/AttachmentStaging.h"

#include <QRegularExpression>

// The name and the bulk lines are trimmed as the draft trims its text, with QString::trimmed.

namespace DraftSnapshot {

std::optional<SubmitJobPayload> snapshot(const TaskDraft& draft, const QString& listID,
                                         const QSet<DefaultField>& visibleFields) {
    // Every submission pins, since a foreground one may be moved to the background at any moment.
    // All files are tried even after a failure.
    QList<StagedAttachment> pinned;
    for (const StagedAttachment& attachment : draft.attachments()) {
        if (std::optional<StagedAttachment> copy = AttachmentStaging::pinForBackgroundJob(attachment)) {
            pinned.append(std::move(*copy));
        }
    }
    if (pinned.size() != draft.attachments().size()) {
        return std::nullopt;
    }
    return SubmitJobPayload{listID, draft.name().trimmed(), draft.buildRequest(visibleFields), std::move(pinned),
                            draft.reminderFireDate()};
}

std::optional<BulkSubmitJobPayload> bulkSnapshot(const TaskDraft& draft, const QString& listID, const QString& lines,
                                                 const QSet<DefaultField>& visibleFields) {
    // Every character of the Unicode newline set breaks a line: LF, VT, FF, CR, NEL, LS and PS. A
    // CRLF gives an empty piece between its two halves, dropped below like any blank line.
    static const QRegularExpression newline(QStringLiteral("[\\x{000A}-\\x{000D}\\x{0085}\\x{2028}\\x{2029}]"));
    QList<QString> taskNames;
    for (const QString& piece : lines.split(newline)) {
        if (QString name = piece.trimmed(); !name.isEmpty()) {
            taskNames.append(std::move(name));
        }
    }
    if (taskNames.isEmpty()) {
        return std::nullopt;
    }
    return BulkSubmitJobPayload{listID, std::move(taskNames), draft.buildRequest(visibleFields)};
}

} // namespace DraftSnapshot
