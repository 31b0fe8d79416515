#include "core/compose/TaskDraft.h"

#include <QtNumeric>
#include <algorithm>

// Names and descriptions are trimmed with QString::trimmed: it drops what QChar::isSpace calls space,
// that is U+0009 to U+000D, U+0085 and every Unicode separator (Zs, Zl, Zp), so white space and
// newlines of every kind.

TaskDraft::TaskDraft(Clock clock, QObject* parent)
    : QObject(parent)
    , m_clock(std::move(clock)) {}

void TaskDraft::setName(const QString& name) {
    assign(m_name, name, &TaskDraft::nameChanged);
}
void TaskDraft::setDescriptionText(const QString& text) {
    assign(m_descriptionText, text, &TaskDraft::descriptionTextChanged);
}
void TaskDraft::setStatus(const std::optional<QString>& status) {
    assign(m_status, status, &TaskDraft::statusChanged);
}
void TaskDraft::setAssignees(const QSet<qint64>& assignees) {
    assign(m_assignees, assignees, &TaskDraft::assigneesChanged);
}
void TaskDraft::setPriority(const std::optional<int>& priority) {
    assign(m_priority, priority, &TaskDraft::priorityChanged);
}
void TaskDraft::setDueDate(const std::optional<QDateTime>& dueDate) {
    assign(m_dueDate, dueDate, &TaskDraft::dueDateChanged);
}
void TaskDraft::setIncludeDueTime(bool include) {
    assign(m_includeDueTime, include, &TaskDraft::includeDueTimeChanged);
}
void TaskDraft::setReminderEnabled(bool enabled) {
    assign(m_reminderEnabled, enabled, &TaskDraft::reminderEnabledChanged);
}
void TaskDraft::setReminderLeadMinutes(qint64 minutes) {
    assign(m_reminderLeadMinutes, minutes, &TaskDraft::reminderLeadMinutesChanged);
}
void TaskDraft::setTags(const QSet<QString>& tags) {
    assign(m_tags, tags, &TaskDraft::tagsChanged);
}
void TaskDraft::setCustom(const QMap<QString, CustomValue>& custom) {
    assign(m_custom, custom, &TaskDraft::customChanged);
}
void TaskDraft::setCustomValue(const CustomValue& value, const QString& fieldID) {
    QMap<QString, CustomValue> custom = m_custom;
    if (value.isEmpty()) {
        custom.remove(fieldID);
    } else {
        custom.insert(fieldID, value);
    }
    setCustom(custom);
}

void TaskDraft::setAttachments(const QList<StagedAttachment>& attachments) {
    assign(m_attachments, attachments, &TaskDraft::attachmentsChanged);
}

void TaskDraft::appendAttachments(const QList<StagedAttachment>& attachments) {
    setAttachments(m_attachments + attachments);
}

void TaskDraft::removeAttachment(const QUuid& id) {
    QList<StagedAttachment> remaining = m_attachments;
    remaining.removeIf([&id](const StagedAttachment& attachment) { return attachment.id == id; });
    setAttachments(remaining);
}

void TaskDraft::reset(qint64 defaultReminderLead) {
    setName({});
    setDescriptionText({});
    setDueDate(std::nullopt);
    setIncludeDueTime(true);
    setReminderEnabled(false);
    setReminderLeadMinutes(defaultReminderLead);
    setPriority(std::nullopt);
    setAttachments({});
    clearListSpecificValues();
}

void TaskDraft::clearListSpecificValues() {
    setStatus(std::nullopt);
    setAssignees({});
    setTags({});
    setCustom({});
}

CreateTaskRequest TaskDraft::buildRequest(const QSet<DefaultField>& visibleFields) const {
    CreateTaskRequest request;
    request.name = m_name.trimmed();
    if (QString description = m_descriptionText.trimmed(); !description.isEmpty()) {
        request.markdownDescription = std::move(description);
    }
    if (visibleFields.contains(DefaultField::status)) {
        request.status = m_status;
    }
    if (visibleFields.contains(DefaultField::assignee) && !m_assignees.isEmpty()) {
        request.assignees = QList<qint64>(m_assignees.begin(), m_assignees.end());
    }
    if (visibleFields.contains(DefaultField::priority)) {
        request.priority = m_priority;
    }
    if (visibleFields.contains(DefaultField::tags) && !m_tags.isEmpty()) {
        QList<QString> tags(m_tags.begin(), m_tags.end());
        std::sort(tags.begin(), tags.end());
        request.tags = std::move(tags);
    }
    if (visibleFields.contains(DefaultField::dueDate) && hasDueInstant()) {
        // QDateTime keeps whole milliseconds, so the count needs no truncation.
        request.dueDate = m_dueDate->toMSecsSinceEpoch();
        request.dueDateTime = m_includeDueTime;
    }
    // QMap walks its keys in ascending order, so the list comes out sorted by id.
    QList<CreateTaskRequest::CustomFieldValue> customFields;
    for (auto it = m_custom.begin(); it != m_custom.end(); ++it) {
        if (std::optional<JSONValue> value = it.value().jsonValue()) {
            customFields.append({it.key(), std::move(*value)});
        }
    }
    if (!customFields.isEmpty()) {
        request.customFields = std::move(customFields);
    }
    return request;
}

std::optional<QDateTime> TaskDraft::reminderFireDate() const {
    if (!m_reminderEnabled || !m_includeDueTime || !hasDueInstant()) {
        return std::nullopt;
    }
    // A lead that would take the count out of range gives no reminder rather than an overflow.
    qint64 leadMSecs = 0;
    qint64 fireMSecs = 0;
    if (qMulOverflow(m_reminderLeadMinutes, qint64(60'000), &leadMSecs) ||
        qSubOverflow(m_dueDate->toMSecsSinceEpoch(), leadMSecs, &fireMSecs)) {
        return std::nullopt;
    }
    QDateTime candidate = QDateTime::fromMSecsSinceEpoch(fireMSecs, Qt::UTC);
    if (candidate <= m_clock()) {
        return std::nullopt;
    }
    return candidate;
}
