#pragma once

#include "core/compose/TaskDraft.h"
#include "core/settings/DefaultField.h"
#include "core/submit/BulkSubmitJobPayload.h"
#include "core/submit/SubmitJobPayload.h"

#include <QSet>
#include <QString>
#include <optional>

// The frozen jobs a submission takes of the draft: nothing edited afterwards reaches them.
namespace DraftSnapshot {

// A frozen job creating the task, with private copies of the files and the reminder instant of
// this moment. Nothing when any file can't be copied; the copies that were made are left behind.
std::optional<SubmitJobPayload> snapshot(const TaskDraft& draft, const QString& listID,
                                         const QSet<DefaultField>& visibleFields);
// A frozen job creating one task per non-blank line, each trimmed, all with the draft's fields;
// nothing when no line is left. Attachments and the reminder stay out.
std::optional<BulkSubmitJobPayload> bulkSnapshot(const TaskDraft& draft, const QString& listID, const QString& lines,
                                                 const QSet<DefaultField>& visibleFields);

} // namespace DraftSnapshot
