#pragma once

#include "core/api/FieldRecords.h"
#include "core/api/UserRecords.h"
#include "core/settings/CustomValue.h"

#include <QDateTime>
#include <QList>
#include <QLocale>
#include <QSet>
#include <QString>
#include <QTimeZone>
#include <optional>

// The texts the composer's field chips show for the values of the draft.
namespace FieldChipTitles {

// The chosen status, or "Status".
QString status(const std::optional<QString>& status);

// "Assignee" with nobody, the member's display name with one, else the number and " assignees".
// Only members of the list count: an id that is not among them is left out.
QString assignee(const QList<Member>& members, const QSet<qint64>& assignees);
// A member's entry in the assignee menu, never blank: the display name, or where that is blank (a
// user name of spaces or none at all) the email, or "User " and the id.
QString memberEntry(const Member& member);

// Where the due date chip reads the date: the user's locale and time zone, and today in that zone.
struct DateContext {
    QDateTime now;
    QTimeZone zone = QTimeZone::systemTimeZone();
    QLocale locale;
};

// A date in the medium style of the locale ("Nov 25, 2026"), or "Today", "Tomorrow" or "Yesterday".
QString relativeDate(const QDateTime& instant, const DateContext& context);

// "Due date" without a date. Otherwise the relative medium date, with the short time when the due
// date carries one, and " ⏰" when a reminder is on too: a date without a time has no reminder.
QString dueDate(const std::optional<QDateTime>& dueDate, bool includeDueTime, bool reminderEnabled,
                const DateContext& context);

// "Tags" with none, the tag with one, else the number and " tags".
QString tags(const QSet<QString>& tags);

// An option's name as the service gives it: its name, else its label, else its id.
QString optionName(const CustomField::TypeConfig::Option& option);

// The label of a custom field's chip for the value the draft holds for it, if any.
QString customField(const CustomField& field, const std::optional<CustomValue>& value, const DateContext& context);

} // namespace FieldChipTitles
