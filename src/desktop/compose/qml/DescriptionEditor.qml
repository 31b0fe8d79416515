import QtQuick
import QtQuick.Controls
import NorvaneBar

// The task's description in Markdown, as plain text: the area grows with its text up to a few
// lines, then scrolls.
ScrollView {
    id: root

    required property ComposerViewModel composer
    // Where the text starts, to line up with the field above.
    property real textPadding: 6
    property real textLeftPadding: 6
    readonly property int maximumLines: 5
    readonly property real maximumHeight: area.topPadding + area.bottomPadding + root.maximumLines * fontMetrics.lineSpacing

    implicitHeight: Math.min(area.implicitHeight, root.maximumHeight)

    background: TextAreaFrame {
        focused: area.activeFocus
    }

    FontMetrics {
        id: fontMetrics

        font: area.font
    }

    ComposerTextArea {
        id: area

        objectName: "taskDescription"
        padding: root.textPadding
        leftPadding: root.textLeftPadding
        placeholderText: qsTr("Description")
        text: root.composer.descriptionText
        onTextChanged: if (text !== root.composer.descriptionText) root.composer.descriptionText = text
        Accessible.name: qsTr("Description")
    }
}
