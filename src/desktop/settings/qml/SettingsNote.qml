import QtQuick
import QtQuick.Controls
import QtQuick.Layouts

// The explanation below a setting, in smaller type.
Label {
    Layout.fillWidth: true
    wrapMode: Text.WordWrap
    font.pointSize: Math.max(1, Qt.application.font.pointSize - 1)
    Accessible.name: text
}
