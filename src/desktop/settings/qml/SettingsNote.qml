import QtQuick
import QtQuick.Controls
import QtQuick.Layouts

// The explanation below a setting, in smaller type.
Label {
    Layout.fillWidth: true
    wrapMode: Text.WordWrap
    font.pixelSize: 11
    Accessible.name: text
}
