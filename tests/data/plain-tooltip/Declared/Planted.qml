import QtQuick.Controls

Button {
    id: button

    ToolTip {
        visible: button.hovered
        text: qsTr("<b>markup</b>")
    }
}
