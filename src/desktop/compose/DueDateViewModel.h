#pragma once

#include "core/async/Clock.h"
#include "core/compose/TaskDraft.h"

#include <QObject>
#include <QStringList>
#include <QTimeZone>
#include <QtQml/qqmlregistration.h>

// The due date chip's popover: the quick choices, the date with its hour and minute, whether the
// date carries a time, the reminder and its lead, and "Clear". Dates are read and written in the
// user's time zone.
class DueDateViewModel : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("The field chips' view model builds it.")
    Q_PROPERTY(bool hasDueDate READ hasDueDate NOTIFY dueDateChanged)
    // The due day as "yyyy-MM-dd", or empty; the hour and minute of the due time (17:00 with none).
    Q_PROPERTY(QString dateText READ dateText NOTIFY dueDateChanged)
    Q_PROPERTY(int hour READ hour NOTIFY dueDateChanged)
    Q_PROPERTY(int minute READ minute NOTIFY dueDateChanged)
    Q_PROPERTY(bool includeDueTime READ includeDueTime WRITE setIncludeDueTime NOTIFY includeDueTimeChanged)
    Q_PROPERTY(bool reminderEnabled READ reminderEnabled WRITE setReminderEnabled NOTIFY reminderEnabledChanged)
    // The "Notify" picker: its entries and the position of the draft's lead among them (-1 for a
    // lead that is not one of them).
    Q_PROPERTY(QStringList reminderLeadLabels READ reminderLeadLabels CONSTANT)
    Q_PROPERTY(
        int reminderLeadIndex READ reminderLeadIndex WRITE setReminderLeadIndex NOTIFY reminderLeadMinutesChanged)

public:
    DueDateViewModel(TaskDraft& draft, Clock clock, QObject* parent = nullptr);

    bool hasDueDate() const;
    QString dateText() const;
    int hour() const;
    int minute() const;
    bool includeDueTime() const { return m_draft.includeDueTime(); }
    void setIncludeDueTime(bool include) { m_draft.setIncludeDueTime(include); }
    bool reminderEnabled() const { return m_draft.reminderEnabled(); }
    void setReminderEnabled(bool enabled) { m_draft.setReminderEnabled(enabled); }
    QStringList reminderLeadLabels() const;
    int reminderLeadIndex() const;
    void setReminderLeadIndex(int index);

    // "Today 5 PM" and "Tomorrow 9 AM": the due date, with its time on.
    Q_INVOKABLE void chooseTodayAtFive();
    Q_INVOKABLE void chooseTomorrowAtNine();
    // The date field with the hour and minute: false, changing nothing, for text that is no day.
    Q_INVOKABLE bool setDate(const QString& dateText, int hour, int minute);
    // "Clear": no due date and no reminder.
    Q_INVOKABLE void clear();

signals:
    void dueDateChanged();
    void includeDueTimeChanged();
    void reminderEnabledChanged();
    void reminderLeadMinutesChanged();

private:
    QDateTime localDueDate() const;
    void chooseQuick(const QDateTime& dueDate);

    TaskDraft& m_draft;
    Clock m_clock;
};
