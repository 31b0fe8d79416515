#include "compose/TaskDraft.h"

TaskDraft::TaskDraft(QObject* parent)
    : QObject(parent) {}

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

void TaskDraft::reset(qint64 defaultReminderLead) {
    setName({});
    setDescriptionText({});
    setDueDate(std::nullopt);
    setIncludeDueTime(true);
    setReminderEnabled(false);
    setReminderLeadMinutes(defaultReminderLead);
    setPriority(std::nullopt);
    clearListSpecificValues();
}

void TaskDraft::clearListSpecificValues() {
    setStatus(std::nullopt);
    setAssignees({});
    setTags({});
    setCustom({});
}
