import QtQuick
import NorvaneBar

// The switch of one row of a FieldToggleModel: the field's label, and whether the composer shows it.
SettingSwitch {
    id: root

    required property FieldToggleModel toggles
    required property int index
    // From the row, anew whenever the settings change.
    required checked

    onToggled: root.toggles.setData(root.toggles.index(root.index, 0), root.checked, FieldToggleModel.CheckedRole)
}
