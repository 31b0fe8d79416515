#include "desktop/compose/FieldChipsViewModel.h"

#include "core/compose/DueDateChoices.h"
#include "core/compose/FieldChipTitles.h"
#include "core/compose/FieldChipsRow.h"
#include "core/compose/Priorities.h"
#include "core/compose/TagEntry.h"
#include "core/support/NorvaneColor.h"
#include "core/support/Overloaded.h"

#include <QCoreApplication>
#include <algorithm>

namespace {
using Chip = FieldChipListModel::Chip;
using Option = CustomField::TypeConfig::Option;

const QString dayFormat = QStringLiteral("yyyy-MM-dd");

QString tr(const char* text) {
    return QCoreApplication::translate("FieldChipsViewModel", text);
}

QString tint(const std::optional<QString>& hex) {
    const std::optional<NorvaneColor> color = NorvaneColor::fromHex(hex);
    return color ? color->name() : QString();
}

QList<Option> optionsOf(const CustomField& field) {
    return field.typeConfig ? field.typeConfig->options.value_or(QList<Option>{}) : QList<Option>{};
}

// The symbol, placeholder and note of a text field's chip by its type.
struct TextKind {
    QString symbol;
    QString placeholder;
    QString note;
};

TextKind textKind(const QString& type) {
    if (type == u"number") {
        return {QStringLiteral("number.circle"), QCoreApplication::translate("FieldChipsViewModel", "0"),
                QCoreApplication::translate("FieldChipsViewModel", "Enter a number")};
    }
    if (type == u"url") {
        return {QStringLiteral("link.circle"), QCoreApplication::translate("FieldChipsViewModel", "https://…"), {}};
    }
    if (type == u"email") {
        return {QStringLiteral("envelope.circle"),
                QCoreApplication::translate("FieldChipsViewModel", "name@example.com"),
                {}};
    }
    if (type == u"phone") {
        return {
            QStringLiteral("phone.circle"), QCoreApplication::translate("FieldChipsViewModel", "+1 555 000 0000"), {}};
    }
    return {QStringLiteral("textformat.abc"), QCoreApplication::translate("FieldChipsViewModel", "Value"), {}};
}
} // namespace

FieldChipsViewModel::FieldChipsViewModel(AppState& app, Clock clock, QObject* parent)
    : QObject(parent)
    , m_app(app)
    , m_draft(app.draft())
    , m_clock(std::move(clock))
    , m_dueDate(app.draft(), m_clock) {
    for (const auto changed :
         {&TaskDraft::statusChanged, &TaskDraft::assigneesChanged, &TaskDraft::priorityChanged,
          &TaskDraft::dueDateChanged, &TaskDraft::includeDueTimeChanged, &TaskDraft::reminderEnabledChanged,
          &TaskDraft::tagsChanged, &TaskDraft::customChanged}) {
        connect(&m_draft, changed, this, &FieldChipsViewModel::refresh);
    }
    connect(&app.settings(), &SettingsStore::settingsChanged, this, &FieldChipsViewModel::refresh);
    // "Today" and "Tomorrow" move on at midnight.
    connect(&app.dayChange(), &DayChange::dayChanged, this, &FieldChipsViewModel::refresh);
    connect(&app, &AppState::currentContextChanged, this, &FieldChipsViewModel::watchContext);
    watchContext();
}

void FieldChipsViewModel::watchContext() {
    if (m_context) {
        disconnect(m_context, nullptr, this, nullptr);
    }
    m_context = m_app.currentContext();
    if (m_context) {
        for (const auto changed : {&ListContext::statusesChanged, &ListContext::membersChanged,
                                   &ListContext::tagsChanged, &ListContext::fieldsChanged}) {
            connect(m_context, changed, this, &FieldChipsViewModel::refresh);
        }
    }
    refresh();
}

void FieldChipsViewModel::refresh() {
    const AppSettings& settings = m_app.settings().settings();
    m_items =
        FieldChipsRow::items(settings.visibleDefaultFields, m_showCustomFields,
                             m_context ? m_context->fields() : QList<CustomField>{}, settings.hiddenCustomFieldIDs);
    const FieldChipsRow::Split split = FieldChipsRow::split(m_items);
    const auto chips = [this](const QList<ComposerFieldItem>& items) {
        QList<Chip> result;
        for (const ComposerFieldItem& item : items) {
            result.append(chip(item));
        }
        return result;
    };
    m_shown.setChips(chips(split.shown));
    m_more.setChips(chips(split.more));
    emit chipsChanged();
}

QString FieldChipsViewModel::moreTitle() const {
    return m_more.count() > 0 ? FieldChipsRow::moreTitle(m_more.count()) : QString();
}

void FieldChipsViewModel::setShowCustomFields(bool show) {
    if (m_showCustomFields == show) {
        return;
    }
    m_showCustomFields = show;
    emit showCustomFieldsChanged();
    refresh();
}

bool FieldChipsViewModel::hasContextTags() const {
    return m_context && !m_context->tags().isEmpty();
}

QList<ChipMenuEntry> FieldChipsViewModel::tagEntries() const {
    return menuEntries(ComposerFieldItem::defaultField(DefaultField::tags).id());
}

Chip FieldChipsViewModel::chip(const ComposerFieldItem& item) const {
    const FieldChipTitles::DateContext dates{.now = m_clock()};
    const auto* standard = std::get_if<DefaultField>(&item.field);
    if (!standard) {
        return customChip(std::get<CustomField>(item.field));
    }
    Chip chip{.chipID = item.id()};
    switch (*standard) {
    case DefaultField::status: {
        const QList<NVStatus> statuses = m_context ? m_context->statuses() : QList<NVStatus>{};
        const auto current = std::find_if(statuses.cbegin(), statuses.cend(),
                                          [this](const NVStatus& status) { return status.status == m_draft.status(); });
        chip = {chip.chipID,
                FieldChipListModel::Status,
                tr("Status"),
                FieldChipTitles::status(m_draft.status()),
                QStringLiteral("circlebadge.fill"),
                current == statuses.cend() ? QString() : tint(current->color),
                m_draft.status().has_value()};
        break;
    }
    case DefaultField::assignee:
        chip = {chip.chipID,
                FieldChipListModel::Assignee,
                tr("Assignee"),
                FieldChipTitles::assignee(m_context ? m_context->members() : QList<Member>{}, m_draft.assignees()),
                QStringLiteral("person"),
                {},
                !m_draft.assignees().isEmpty()};
        break;
    case DefaultField::dueDate:
        chip = {chip.chipID,
                FieldChipListModel::DueDate,
                tr("Due date"),
                FieldChipTitles::dueDate(m_draft.dueDate(), m_draft.includeDueTime(), m_draft.reminderEnabled(), dates),
                QStringLiteral("calendar"),
                {},
                m_dueDate.hasDueDate()};
        break;
    case DefaultField::priority: {
        const std::optional<Priority> priority = Priorities::withValue(m_draft.priority());
        chip = {chip.chipID,
                FieldChipListModel::Priority,
                tr("Priority"),
                priority ? priority->name : tr("Priority"),
                QStringLiteral("flag"),
                priority ? priority->color.name() : QString(),
                priority.has_value()};
        break;
    }
    case DefaultField::tags:
        chip = {chip.chipID,
                FieldChipListModel::Tags,
                tr("Tags"),
                FieldChipTitles::tags(m_draft.tags()),
                QStringLiteral("tag"),
                {},
                !m_draft.tags().isEmpty()};
        break;
    }
    return chip;
}

Chip FieldChipsViewModel::customChip(const CustomField& field) const {
    const std::optional<CustomValue> value = customValue(field);
    Chip chip{.chipID = ComposerFieldItem::customField(field).id(),
              .title = field.name,
              .label = FieldChipTitles::customField(field, value, {.now = m_clock()}),
              .isActive = value && !value->isEmpty()};
    if (field.type == u"drop_down") {
        chip.kind = FieldChipListModel::Dropdown;
        chip.symbol = QStringLiteral("chevron.down.circle");
    } else if (field.type == u"labels") {
        chip.kind = FieldChipListModel::Labels;
        chip.symbol = QStringLiteral("tag.circle");
    } else if (field.type == u"date") {
        chip.kind = FieldChipListModel::Date;
        chip.symbol = QStringLiteral("calendar.circle");
    } else if (field.type == u"checkbox") {
        chip.kind = FieldChipListModel::Checkbox;
        chip.symbol = chip.isActive ? QStringLiteral("checkmark.square.fill") : QStringLiteral("square");
    } else {
        const TextKind kind = textKind(field.type);
        chip.kind = FieldChipListModel::Text;
        chip.symbol = kind.symbol;
        chip.placeholder = kind.placeholder;
        chip.note = kind.note;
    }
    return chip;
}

std::optional<CustomField> FieldChipsViewModel::customField(const QString& chipID) const {
    for (const ComposerFieldItem& item : m_items) {
        if (const auto* field = std::get_if<CustomField>(&item.field); field && item.id() == chipID) {
            return *field;
        }
    }
    return std::nullopt;
}

std::optional<CustomValue> FieldChipsViewModel::customValue(const CustomField& field) const {
    const auto found = m_draft.custom().constFind(field.id);
    return found == m_draft.custom().cend() ? std::nullopt : std::optional(*found);
}

QList<FieldChipsViewModel::Entry> FieldChipsViewModel::entries(const QString& chipID) const {
    QList<Entry> result;
    TaskDraft& draft = m_draft;
    if (chipID == ComposerFieldItem::defaultField(DefaultField::status).id()) {
        result.append({{tr("Default status"), false, false, {}}, [&draft] { draft.setStatus(std::nullopt); }});
        for (const NVStatus& status : m_context ? m_context->statuses() : QList<NVStatus>{}) {
            result.append({{status.status, draft.status() == status.status, true, tint(status.color)},
                           [&draft, name = status.status] { draft.setStatus(name); }});
        }
    } else if (chipID == ComposerFieldItem::defaultField(DefaultField::assignee).id()) {
        for (const Member& member : m_context ? m_context->members() : QList<Member>{}) {
            result.append({{FieldChipTitles::memberEntry(member), draft.assignees().contains(member.id), true, {}},
                           [&draft, id = member.id] {
                               QSet<qint64> assignees = draft.assignees();
                               if (!assignees.remove(id)) {
                                   assignees.insert(id);
                               }
                               draft.setAssignees(assignees);
                           }});
        }
        result.append({{tr("Clear assignees"), false, false, {}}, [&draft] { draft.setAssignees({}); }});
    } else if (chipID == ComposerFieldItem::defaultField(DefaultField::priority).id()) {
        for (const Priority& priority : Priorities::all()) {
            result.append({{priority.name, draft.priority() == priority.value, true, priority.color.name()},
                           [&draft, value = priority.value] { draft.setPriority(value); }});
        }
        if (draft.priority()) {
            result.append({{tr("No priority"), false, false, {}}, [&draft] { draft.setPriority(std::nullopt); }});
        }
    } else if (chipID == ComposerFieldItem::defaultField(DefaultField::tags).id()) {
        for (const NVTag& tag : m_context ? m_context->tags() : QList<NVTag>{}) {
            result.append(
                {{tag.name, draft.tags().contains(tag.name), true, tint(tag.tagBg)}, [&draft, name = tag.name] {
                     QSet<QString> tags = draft.tags();
                     if (!tags.remove(name)) {
                         tags.insert(name);
                     }
                     draft.setTags(tags);
                 }});
        }
    } else if (const std::optional<CustomField> field = customField(chipID)) {
        result = customEntries(*field);
    }
    return result;
}

QList<FieldChipsViewModel::Entry> FieldChipsViewModel::customEntries(const CustomField& field) const {
    QList<Entry> result;
    AppState& app = m_app;
    const std::optional<CustomValue> value = customValue(field);
    const CustomValue::Case current = value ? value->value : CustomValue::Case{};
    CustomValue cleared;
    if (field.type == u"drop_down") {
        cleared = CustomValue::option(std::nullopt);
        const auto* chosen = std::get_if<CustomValue::Option>(&current);
        for (const Option& option : optionsOf(field)) {
            result.append(
                {{FieldChipTitles::optionName(option), chosen && chosen->id == option.id, true, tint(option.color)},
                 [&app, id = field.id, option = option.id] { app.setCustomValue(CustomValue::option(option), id); }});
        }
    } else if (field.type == u"labels") {
        cleared = CustomValue::labels({});
        const auto* labels = std::get_if<CustomValue::Labels>(&current);
        const QSet<QString> chosen = labels ? labels->ids : QSet<QString>{};
        for (const Option& option : optionsOf(field)) {
            result.append({{FieldChipTitles::optionName(option), chosen.contains(option.id), true, tint(option.color)},
                           [&app, chosen, id = field.id, option = option.id] {
                               QSet<QString> ids = chosen;
                               if (!ids.remove(option)) {
                                   ids.insert(option);
                               }
                               app.setCustomValue(CustomValue::labels(ids), id);
                           }});
        }
    } else {
        return result;
    }
    result.append(
        {{tr("Clear"), false, false, {}}, [&app, cleared, id = field.id] { app.setCustomValue(cleared, id); }});
    return result;
}

QList<ChipMenuEntry> FieldChipsViewModel::menuEntries(const QString& chipID) const {
    QList<ChipMenuEntry> result;
    for (const Entry& entry : entries(chipID)) {
        result.append(entry.shown);
    }
    return result;
}

void FieldChipsViewModel::chooseEntry(const QString& chipID, int index) {
    const QList<Entry> choices = entries(chipID);
    if (index >= 0 && index < choices.size()) {
        choices.at(index).choose();
    }
}

void FieldChipsViewModel::toggleCheckbox(const QString& chipID) {
    if (const std::optional<CustomField> field = customField(chipID)) {
        const std::optional<CustomValue> value = customValue(*field);
        m_app.setCustomValue(CustomValue::checkbox(!value || value->isEmpty()), field->id);
    }
}

QString FieldChipsViewModel::textValue(const QString& chipID) const {
    const std::optional<CustomField> field = customField(chipID);
    const std::optional<CustomValue> value = field ? customValue(*field) : std::nullopt;
    return value ? std::visit(Overloaded{[](const CustomValue::Text& text) { return text.text; },
                                         [](const CustomValue::Number& number) { return number.text; },
                                         [](const auto&) { return QString(); }},
                              value->value)
                 : QString();
}

void FieldChipsViewModel::commitText(const QString& chipID, const QString& text) {
    if (const std::optional<CustomField> field = customField(chipID)) {
        m_app.setCustomValue(field->type == u"number" ? CustomValue::number(text) : CustomValue::text(text), field->id);
    }
}

QString FieldChipsViewModel::dateText(const QString& chipID) const {
    const std::optional<CustomField> field = customField(chipID);
    const std::optional<CustomValue> value = field ? customValue(*field) : std::nullopt;
    const auto* date = value ? std::get_if<CustomValue::Date>(&value->value) : nullptr;
    return date && date->date && date->date->isValid()
               ? date->date->toTimeZone(QTimeZone::systemTimeZone()).date().toString(dayFormat)
               : QString();
}

bool FieldChipsViewModel::setDateText(const QString& chipID, const QString& text) {
    const std::optional<CustomField> field = customField(chipID);
    const QDateTime day = DueDateChoices::onDay(QDate::fromString(text.trimmed(), dayFormat), QTime(0, 0));
    if (!field || !day.isValid()) {
        return false;
    }
    m_app.setCustomValue(CustomValue::date(day), field->id);
    return true;
}

void FieldChipsViewModel::clearDate(const QString& chipID) {
    if (const std::optional<CustomField> field = customField(chipID)) {
        m_app.setCustomValue(CustomValue::date(std::nullopt), field->id);
    }
}

bool FieldChipsViewModel::addTag(const QString& text) {
    QSet<QString> tags = m_draft.tags();
    if (!TagEntry::addTag(tags, text)) {
        return false;
    }
    m_draft.setTags(tags);
    return true;
}
