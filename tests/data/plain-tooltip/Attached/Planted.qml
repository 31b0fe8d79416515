import QtQuick.Controls

Button {
    ToolTip.visible: hovered
    ToolTip.text: "<b>markup</b>"
}
