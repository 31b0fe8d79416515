#pragma once

#include <QAbstractListModel>
#include <QList>
#include <QString>
#include <QtQml/qqmlregistration.h>

// The field chips of one stretch of the composer's row (the row itself, or what is behind
// "More +N"), as QML shows them. A change of one chip's text or tint changes that row alone.
class FieldChipListModel : public QAbstractListModel {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("The field chips' view model fills it.")
    Q_PROPERTY(int count READ count NOTIFY countChanged)

public:
    // How a chip edits its value.
    enum Kind {
        Status,
        Assignee,
        DueDate,
        Priority,
        Tags,
        Dropdown,
        Labels,
        Date,
        Checkbox,
        Text,
    };
    Q_ENUM(Kind)

    enum Role {
        ChipIDRole = Qt::UserRole + 1,
        KindRole,
        TitleRole,
        LabelRole,
        SymbolRole,
        TintRole,
        IsActiveRole,
        PlaceholderRole,
        NoteRole,
    };

    // One chip as shown. Texts from the service (names, options) are plain text.
    struct Chip {
        QString chipID;
        Kind kind = Text;
        // What the chip edits: "Status", "Due date" or the custom field's name.
        QString title;
        QString label;
        QString symbol;
        // "#rrggbb", or empty for the palette's colour.
        QString tint;
        bool isActive = false;
        // The text field's placeholder and note of a text chip.
        QString placeholder;
        QString note;

        bool operator==(const Chip&) const = default;
    };

    using QAbstractListModel::QAbstractListModel;

    int count() const { return static_cast<int>(m_chips.size()); }
    const QList<Chip>& chips() const { return m_chips; }
    // Takes the chips: the same chips in the same order change row by row, others reset the model.
    void setChips(const QList<Chip>& chips);

    int rowCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role) const override;
    QHash<int, QByteArray> roleNames() const override;

signals:
    void countChanged();

private:
    QList<Chip> m_chips;
};
