#pragma once

#include "core/app/AppState.h"
#include "core/compose/ComposerFieldItem.h"
#include "desktop/compose/ChipMenuEntry.h"
#include "desktop/compose/DueDateViewModel.h"
#include "desktop/compose/FieldChipListModel.h"

#include <QObject>
#include <QPointer>
#include <QtQml/qqmlregistration.h>
#include <functional>

// The composer's row of field chips: which chips show (five at most, the rest behind "More +N"),
// what each reads, and the entries of their menus and popovers. Every choice edits the draft at
// once; custom values go through AppState::setCustomValue. Chips are named by their item's id
// ("default-status", "custom-<field id>").
class FieldChipsViewModel : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("The app builds the popover's view models.")
    Q_PROPERTY(FieldChipListModel* shownChips READ shownChips CONSTANT)
    Q_PROPERTY(FieldChipListModel* moreChips READ moreChips CONSTANT)
    // "More +N", or empty when every chip stands in the row.
    Q_PROPERTY(QString moreTitle READ moreTitle NOTIFY chipsChanged)
    Q_PROPERTY(bool showCustomFields READ showCustomFields WRITE setShowCustomFields NOTIFY showCustomFieldsChanged)
    // Whether the list's space has tags to choose from.
    Q_PROPERTY(bool hasContextTags READ hasContextTags NOTIFY chipsChanged)
    // The tags popover's list: the space's tags, the chosen ones checked.
    Q_PROPERTY(QList<ChipMenuEntry> tagEntries READ tagEntries NOTIFY chipsChanged)
    Q_PROPERTY(DueDateViewModel* dueDate READ dueDate CONSTANT)

public:
    explicit FieldChipsViewModel(AppState& app, Clock clock = Clocks::system(), QObject* parent = nullptr);

    FieldChipListModel* shownChips() { return &m_shown; }
    FieldChipListModel* moreChips() { return &m_more; }
    QString moreTitle() const;
    bool showCustomFields() const { return m_showCustomFields; }
    void setShowCustomFields(bool show);
    bool hasContextTags() const;
    QList<ChipMenuEntry> tagEntries() const;
    DueDateViewModel* dueDate() { return &m_dueDate; }

    // The entries of a chip's menu, or of the tags popover's list, as they are now.
    Q_INVOKABLE QList<ChipMenuEntry> menuEntries(const QString& chipID) const;
    // Does what the entry at that position of menuEntries(chipID) says.
    Q_INVOKABLE void chooseEntry(const QString& chipID, int index);
    Q_INVOKABLE void toggleCheckbox(const QString& chipID);
    // A text or number field's value as typed, and its commit: a number field keeps a number.
    Q_INVOKABLE QString textValue(const QString& chipID) const;
    Q_INVOKABLE void commitText(const QString& chipID, const QString& text);
    // A date field's day as "yyyy-MM-dd" in the user's zone, or empty; setting it takes the same form
    // and is false, changing nothing, for text that is no day.
    Q_INVOKABLE QString dateText(const QString& chipID) const;
    Q_INVOKABLE bool setDateText(const QString& chipID, const QString& text);
    // "Clear" of a date field's popover.
    Q_INVOKABLE void clearDate(const QString& chipID);
    // The tags popover's "New tag": true when a tag was added and the field is to be emptied.
    Q_INVOKABLE bool addTag(const QString& text);

signals:
    void chipsChanged();
    void showCustomFieldsChanged();

private:
    struct Entry {
        ChipMenuEntry shown;
        std::function<void()> choose;
    };

    QList<Entry> entries(const QString& chipID) const;
    QList<Entry> customEntries(const CustomField& field) const;
    std::optional<CustomField> customField(const QString& chipID) const;
    std::optional<CustomValue> customValue(const CustomField& field) const;
    FieldChipListModel::Chip chip(const ComposerFieldItem& item) const;
    FieldChipListModel::Chip customChip(const CustomField& field) const;
    void watchContext();
    void refresh();

    AppState& m_app;
    TaskDraft& m_draft;
    Clock m_clock;
    DueDateViewModel m_dueDate;
    FieldChipListModel m_shown;
    FieldChipListModel m_more;
    QList<ComposerFieldItem> m_items;
    QPointer<ListContext> m_context;
    bool m_showCustomFields = true;
};
