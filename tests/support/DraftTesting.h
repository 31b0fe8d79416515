#pragma once

#include "core/async/Clock.h"
#include "core/compose/StagedAttachment.h"
#include "core/compose/TaskDraft.h"
#include "core/settings/CustomValue.h"
#include "core/settings/DefaultField.h"
#include "support/TemporaryFolderTesting.h"

#include <QDateTime>
#include <QSet>
#include <QTemporaryDir>
#include <QUrl>
#include <QUuid>

// What tests of the draft and of its snapshots share: a fixed clock, every standard field visible,
// attachments, and a draft with every field set.
namespace DraftTesting {

inline const QDateTime now(QDate(2026, 3, 10), QTime(12, 0), Qt::UTC);

inline Clock fixedClock() {
    return [] { return now; };
}

inline const QSet<DefaultField> allFields{DefaultField::status, DefaultField::assignee, DefaultField::dueDate,
                                          DefaultField::priority, DefaultField::tags};

// An attachment whose file doesn't exist.
inline StagedAttachment attachment(const QString& filename) {
    return {QUuid::createUuid(), QUrl::fromLocalFile(QStringLiteral("/nowhere/") + filename), filename};
}

// An attachment whose file holds its own name.
inline StagedAttachment stagedFile(const QTemporaryDir& folder, const QString& filename) {
    const QByteArray bytes = filename.toUtf8();
    const QString path = writtenFile(folder.filePath(filename), bytes);
    return {QUuid::createUuid(), QUrl::fromLocalFile(path), filename, false, false, bytes.size()};
}

// A draft with every field set and a due time two hours ahead of the clock.
inline void fill(TaskDraft& draft) {
    draft.setName(QStringLiteral("Write report"));
    draft.setDescriptionText(QStringLiteral("Line one\nline two"));
    draft.setStatus(QStringLiteral("in progress"));
    draft.setAssignees({42});
    draft.setPriority(2);
    draft.setDueDate(now.addSecs(2 * 3600));
    draft.setReminderEnabled(true);
    draft.setTags({QStringLiteral("b"), QStringLiteral("a")});
    draft.setCustom({{QStringLiteral("cf-1"), CustomValue::text(QStringLiteral("x"))}});
    draft.setAttachments({attachment(QStringLiteral("a.png"))});
}

} // namespace DraftTesting
