import QtQuick.Controls

Button {
    id: button

    ToolTip {
        visible: button.hovered
        text: "<b>markup</b>"
    }
}
