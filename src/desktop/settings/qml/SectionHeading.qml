import QtQuick
import QtQuick.Controls
import QtQuick.Layouts

// The title of a group of settings.
Label {
    Layout.fillWidth: true
    Layout.topMargin: 8
    font.bold: true
    wrapMode: Text.WordWrap
    Accessible.role: Accessible.Heading
    Accessible.name: text
}
