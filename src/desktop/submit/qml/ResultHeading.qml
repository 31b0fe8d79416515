import QtQuick
import QtQuick.Controls
import QtQuick.Layouts

// A result page's mark and title.
RowLayout {
    id: root

    required property string symbol
    required property string title

    spacing: 8

    Image {
        source: "image://symbol/" + root.symbol
        sourceSize.width: 24
        sourceSize.height: 24
        Accessible.ignored: true
    }

    Label {
        objectName: "resultTitle"
        Layout.fillWidth: true
        wrapMode: Text.Wrap
        textFormat: Text.PlainText
        font.bold: true
        font.pixelSize: 16
        text: root.title
        Accessible.role: Accessible.Heading
        Accessible.name: text
    }
}
