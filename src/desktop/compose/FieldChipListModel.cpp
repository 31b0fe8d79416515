#include "desktop/compose/FieldChipListModel.h"

#include <algorithm>

void FieldChipListModel::setChips(const QList<Chip>& chips) {
    const bool sameChips = std::equal(chips.cbegin(), chips.cend(), m_chips.cbegin(), m_chips.cend(),
                                      [](const Chip& a, const Chip& b) { return a.chipID == b.chipID; });
    if (!sameChips) {
        const int oldCount = count();
        beginResetModel();
        m_chips = chips;
        endResetModel();
        if (oldCount != count()) {
            emit countChanged();
        }
        return;
    }
    for (qsizetype row = 0; row < chips.size(); ++row) {
        if (chips.at(row) != m_chips.at(row)) {
            m_chips[row] = chips.at(row);
            const QModelIndex changed = index(static_cast<int>(row));
            emit dataChanged(changed, changed);
        }
    }
}

int FieldChipListModel::rowCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : count();
}

QVariant FieldChipListModel::data(const QModelIndex& index, int role) const {
    if (!checkIndex(index, CheckIndexOption::IndexIsValid | CheckIndexOption::ParentIsInvalid)) {
        return {};
    }
    const Chip& chip = m_chips.at(index.row());
    switch (role) {
    case ChipIDRole:
        return chip.chipID;
    case KindRole:
        return chip.kind;
    case TitleRole:
        return chip.title;
    case LabelRole:
        return chip.label;
    case SymbolRole:
        return chip.symbol;
    case TintRole:
        return chip.tint;
    case IsActiveRole:
        return chip.isActive;
    case PlaceholderRole:
        return chip.placeholder;
    case NoteRole:
        return chip.note;
    default:
        return {};
    }
}

QHash<int, QByteArray> FieldChipListModel::roleNames() const {
    return {{ChipIDRole, "chipID"}, {KindRole, "kind"}, {TitleRole, "title"},       {LabelRole, "label"},
            {SymbolRole, "symbol"}, {TintRole, "tint"}, {IsActiveRole, "isActive"}, {PlaceholderRole, "placeholder"},
            {NoteRole, "note"}};
}
