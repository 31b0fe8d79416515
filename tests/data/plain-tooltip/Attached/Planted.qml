import QtQuick.Controls

Button {
    ToolTip.visible: hovered
    ToolTip.text: qsTr("<b>markup</b>")
}
