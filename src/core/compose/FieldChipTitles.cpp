#include "core/compose/FieldChipTitles.h"

#include "core/support/Overloaded.h"

#include <QCoreApplication>
#include <QRegularExpression>
#include <algorithm>

namespace FieldChipTitles {
namespace {

QString tr(const char* text) {
    return QCoreApplication::translate("FieldChipTitles", text);
}

// The locale's long date format without the weekday and with the month abbreviated: the medium
// style ("MMM d, yyyy" in English, "d. MMM yyyy" in German), which QLocale does not offer.
QString mediumDateFormat(const QLocale& locale) {
    QString format = locale.dateFormat(QLocale::LongFormat);
    static const QRegularExpression weekday(QStringLiteral("dddd[,.]?\\s*|\\s*[,.]?\\s*dddd"));
    format.remove(weekday);
    format.replace(QStringLiteral("MMMM"), QStringLiteral("MMM"));
    return format.trimmed();
}

std::optional<CustomField::TypeConfig::Option> optionWithID(const CustomField& field, const QString& id) {
    const QList<CustomField::TypeConfig::Option> options =
        field.typeConfig ? field.typeConfig->options.value_or(QList<CustomField::TypeConfig::Option>{})
                         : QList<CustomField::TypeConfig::Option>{};
    const auto found =
        std::find_if(options.cbegin(), options.cend(), [&id](const auto& option) { return option.id == id; });
    return found == options.cend() ? std::nullopt : std::optional(*found);
}

QString fieldWithValue(const QString& fieldName, const QString& value) {
    return tr("%1: %2").arg(fieldName, value);
}

} // namespace

QString status(const std::optional<QString>& status) {
    return status.value_or(tr("Status"));
}

QString assignee(const QList<Member>& members, const QSet<qint64>& assignees) {
    QList<Member> chosen;
    std::copy_if(members.cbegin(), members.cend(), std::back_inserter(chosen),
                 [&assignees](const Member& member) { return assignees.contains(member.id); });
    if (chosen.isEmpty()) {
        return tr("Assignee");
    }
    if (chosen.size() == 1) {
        return chosen.first().displayName();
    }
    const int count = static_cast<int>(chosen.size());
    return QCoreApplication::translate("FieldChipTitles", "%n assignees", nullptr, count);
}

QString memberEntry(const Member& member) {
    if (!member.displayName().trimmed().isEmpty()) {
        return member.displayName();
    }
    if (member.email && !member.email->trimmed().isEmpty()) {
        return *member.email;
    }
    return tr("User %1").arg(member.id);
}

QString relativeDate(const QDateTime& instant, const DateContext& context) {
    const QDate day = instant.toTimeZone(context.zone).date();
    const qint64 daysFromToday = context.now.toTimeZone(context.zone).date().daysTo(day);
    switch (daysFromToday) {
    case -1:
        return tr("Yesterday");
    case 0:
        return tr("Today");
    case 1:
        return tr("Tomorrow");
    default:
        return context.locale.toString(day, mediumDateFormat(context.locale));
    }
}

QString dueDate(const std::optional<QDateTime>& dueDate, bool includeDueTime, bool reminderEnabled,
                const DateContext& context) {
    if (!dueDate || !dueDate->isValid()) {
        return tr("Due date");
    }
    const QString date = relativeDate(*dueDate, context);
    if (!includeDueTime) {
        return date;
    }
    // Some locales' short time still carries seconds; a due time never has any.
    const QString format = context.locale.timeFormat(QLocale::ShortFormat).remove(QStringLiteral(":ss"));
    const QString time = context.locale.toString(dueDate->toTimeZone(context.zone).time(), format);
    const QString title = tr("%1 at %2").arg(date, time);
    return reminderEnabled ? title + QStringLiteral(" ⏰") : title;
}

QString tags(const QSet<QString>& tags) {
    if (tags.isEmpty()) {
        return tr("Tags");
    }
    if (tags.size() == 1) {
        return *tags.cbegin();
    }
    const int count = static_cast<int>(tags.size());
    return QCoreApplication::translate("FieldChipTitles", "%n tags", nullptr, count);
}

QString optionName(const CustomField::TypeConfig::Option& option) {
    return option.name.value_or(option.label.value_or(option.id));
}

QString customField(const CustomField& field, const std::optional<CustomValue>& value, const DateContext& context) {
    const CustomValue::Case current = value ? value->value : CustomValue::Case{};
    if (field.type == u"drop_down") {
        const auto* option = std::get_if<CustomValue::Option>(&current);
        if (!option || !option->id) {
            return fieldWithValue(field.name, tr("Not set"));
        }
        const auto chosen = optionWithID(field, *option->id);
        return fieldWithValue(field.name, chosen ? optionName(*chosen) : *option->id);
    }
    if (field.type == u"labels") {
        const auto* labels = std::get_if<CustomValue::Labels>(&current);
        const int count = labels ? static_cast<int>(labels->ids.size()) : 0;
        return count > 0 ? QCoreApplication::translate("FieldChipTitles", "%n selected", nullptr, count) : field.name;
    }
    if (field.type == u"date") {
        const auto* date = std::get_if<CustomValue::Date>(&current);
        return date && date->date && date->date->isValid() ? relativeDate(*date->date, context) : field.name;
    }
    if (field.type == u"checkbox") {
        const auto* checkbox = std::get_if<CustomValue::Checkbox>(&current);
        return checkbox && checkbox->checked ? tr("Checked") : tr("Unchecked");
    }
    const QString typed = std::visit(Overloaded{[](const CustomValue::Text& text) { return text.text; },
                                                [](const CustomValue::Number& number) { return number.text; },
                                                [](const auto&) { return QString(); }},
                                     current);
    return value && !value->isEmpty() ? typed : tr("Not set");
}

} // namespace FieldChipTitles
