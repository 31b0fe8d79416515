import QtQuick
import QtQuick.Controls
import QtQuick.Layouts

// A date field: the day, set when Return is pressed, and "Clear".
ChipPopover {
    id: root

    objectName: "dateValuePopover"

    RowLayout {
        spacing: 8

        TextField {
            objectName: "dateValue"
            Layout.preferredWidth: 112
            focus: true
            placeholderText: qsTr("YYYY-MM-DD")
            text: root.chips.dateText(root.chipID)
            inputMethodHints: Qt.ImhDate
            onAccepted: if (root.chips.setDateText(root.chipID, text)) root.close()
            Accessible.name: root.title
        }

        Button {
            objectName: "clearDate"
            text: qsTr("Clear")
            onClicked: {
                root.chips.clearDate(root.chipID);
                root.close();
            }
            Keys.onReturnPressed: clicked()
            Accessible.name: text
        }
    }
}
