import QtQuick
import QtQuick.Controls

// The program's one tool tip, declared in the control it explains and shown while `visible`:
//
//     PlainToolTip { text: qsTr("Dismiss"); visible: button.hovered }
//
// Its text is shown exactly as written. The style's own tool tip renders rich text, where a name
// from the service would show its markup and fetch its pictures. The tip is made only while shown,
// so that a row of many controls stays light.
Loader {
    id: root

    property string text
    // Below the control instead of above it, where it would hide what stands there.
    property bool below

    active: root.visible && root.text.length > 0

    sourceComponent: ToolTip {
        id: tip

        property bool below

        objectName: "plainToolTip"
        y: tip.below ? tip.parent.height + 3 : -tip.implicitHeight - 3
        visible: true

        contentItem: Text {
            objectName: "plainToolTipText"
            wrapMode: Text.Wrap
            textFormat: Text.PlainText
            font: tip.font
            color: tip.palette.toolTipText
            text: tip.text
        }
    }

    // The tip stands by the control the loader is declared in, and says the loader's text.
    Binding {
        target: root.item
        property: "parent"
        value: root.parent
    }
    Binding {
        target: root.item
        property: "text"
        value: root.text
    }
    Binding {
        target: root.item
        property: "below"
        value: root.below
    }
}
