#pragma once

#include "core/api/TaskRequests.h"
#include "core/async/Clock.h"
#include "core/compose/StagedAttachment.h"
#include "core/settings/CustomValue.h"
#include "core/settings/DefaultField.h"

#include <QDateTime>
#include <QList>
#include <QMap>
#include <QObject>
#include <QSet>
#include <QString>
#include <QUuid>
#include <optional>

// The one task being composed in the popover. Each field notifies its own change; assigning an
// equal value stores it silently. Submissions never read it directly: they take a frozen copy.
class TaskDraft : public QObject {
    Q_OBJECT

public:
    static constexpr qint64 initialReminderLeadMinutes = 15;

    // The clock decides whether a reminder would already lie in the past.
    explicit TaskDraft(Clock clock = Clocks::system(), QObject* parent = nullptr);

    const QString& name() const { return m_name; }
    const QString& descriptionText() const { return m_descriptionText; }
    const std::optional<QString>& status() const { return m_status; }
    const QSet<qint64>& assignees() const { return m_assignees; }
    const std::optional<int>& priority() const { return m_priority; }
    const std::optional<QDateTime>& dueDate() const { return m_dueDate; }
    bool includeDueTime() const { return m_includeDueTime; }
    bool reminderEnabled() const { return m_reminderEnabled; }
    qint64 reminderLeadMinutes() const { return m_reminderLeadMinutes; }
    const QSet<QString>& tags() const { return m_tags; }
    // Custom field values by field id; only non-empty values are kept.
    const QMap<QString, CustomValue>& custom() const { return m_custom; }
    // Files attached so far, in the order added. The draft owns none of them: dropping one from the
    // list, or resetting, leaves the staged file where it is.
    const QList<StagedAttachment>& attachments() const { return m_attachments; }

    void setName(const QString& name);
    void setDescriptionText(const QString& text);
    void setStatus(const std::optional<QString>& status);
    void setAssignees(const QSet<qint64>& assignees);
    void setPriority(const std::optional<int>& priority);
    void setDueDate(const std::optional<QDateTime>& dueDate);
    void setIncludeDueTime(bool include);
    void setReminderEnabled(bool enabled);
    void setReminderLeadMinutes(qint64 minutes);
    void setTags(const QSet<QString>& tags);
    void setCustom(const QMap<QString, CustomValue>& custom);
    // The value entered for one custom field; an empty value removes the field.
    void setCustomValue(const CustomValue& value, const QString& fieldID);
    void setAttachments(const QList<StagedAttachment>& attachments);
    void appendAttachments(const QList<StagedAttachment>& attachments);
    // Drops the attachment with that id from the list, if there is one; its file stays.
    void removeAttachment(const QUuid& id);

    // Every field back to its first value, except the reminder lead, which takes the argument.
    void reset(qint64 defaultReminderLead);
    // Forgets what belongs to one list: status, assignees, tags and custom values.
    void clearListSpecificValues();

    // The body of creating the task. Name, description and custom values always go; a standard
    // field goes only when visible and set. A due date without a millisecond count (an invalid
    // QDateTime) counts as no due date.
    CreateTaskRequest buildRequest(const QSet<DefaultField>& visibleFields) const;
    // When the local reminder should fire: the due time less the lead, if a reminder is wanted, the
    // due date carries a time and that moment is still ahead. Hidden due dates count too.
    std::optional<QDateTime> reminderFireDate() const;

signals:
    void nameChanged();
    void descriptionTextChanged();
    void statusChanged();
    void assigneesChanged();
    void priorityChanged();
    void dueDateChanged();
    void includeDueTimeChanged();
    void reminderEnabledChanged();
    void reminderLeadMinutesChanged();
    void tagsChanged();
    void customChanged();
    void attachmentsChanged();

private:
    // A due date is set and has a millisecond count. An invalid QDateTime has none; no valid one
    // lies outside the range of a 64-bit count of milliseconds.
    bool hasDueInstant() const { return m_dueDate && m_dueDate->isValid(); }

    template <typename T> void assign(T& field, const T& value, void (TaskDraft::*changed)()) {
        if (field == value) {
            return;
        }
        field = value;
        emit(this->*changed)();
    }

    QString m_name;
    QString m_descriptionText;
    std::optional<QString> m_status;
    QSet<qint64> m_assignees;
    std::optional<int> m_priority;
    std::optional<QDateTime> m_dueDate;
    bool m_includeDueTime = true;
    bool m_reminderEnabled = false;
    qint64 m_reminderLeadMinutes = initialReminderLeadMinutes;
    QSet<QString> m_tags;
    QMap<QString, CustomValue> m_custom;
    QList<StagedAttachment> m_attachments;
    Clock m_clock;
};
