import QtQuick
import QtQuick.Controls
import QtQuick.Layouts
import NorvaneBar

// Why the last sign-in with a pasted token failed, in the service's words; hidden when it didn't.
// The mark says it is an error; the text keeps the window's text colour, readable in light and dark.
RowLayout {
    id: root

    required property OnboardingModel form

    visible: root.form.errorMessage.length > 0
    spacing: 8

    Image {
        Layout.alignment: Qt.AlignTop
        // Asked for only when shown: the first picture loads the SVG renderer.
        source: root.form.errorMessage.length > 0 ? "image://symbol/xmark.circle.fill" : ""
        sourceSize.width: 16
        sourceSize.height: 16
        Accessible.ignored: true
    }

    Label {
        objectName: "errorMessage"
        Layout.fillWidth: true
        wrapMode: Text.WordWrap
        textFormat: Text.PlainText
        text: root.form.errorMessage
        Accessible.role: Accessible.AlertMessage
        Accessible.name: text
    }
}
