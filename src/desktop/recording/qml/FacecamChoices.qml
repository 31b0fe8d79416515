import QtQuick
import QtQuick.Controls
import QtQuick.Dialogs
import QtQuick.Layouts
import NorvaneBar

// "Facecam": whether the camera shows while recording, its shape, corner and background, and the
// custom image behind the person.
ColumnLayout {
    id: root

    required property RecordingDefaultsViewModel choices

    objectName: "facecamChoices"
    spacing: 6

    Label {
        text: qsTr("Facecam")
        font.bold: true
        Accessible.role: Accessible.Heading
        Accessible.name: text
    }

    SettingSwitch {
        objectName: "showFacecamWhileRecording"
        label: qsTr("Show facecam while recording")
        checked: root.choices.facecamVisible
        onToggled: root.choices.facecamVisible = checked
    }

    GridLayout {
        Layout.fillWidth: true
        columns: 2
        columnSpacing: 8
        rowSpacing: 6

        Label {
            text: qsTr("Shape")
        }

        PlainComboBox {
            objectName: "shape"
            model: root.choices.shapeLabels
            currentIndex: root.choices.shapeIndex
            onActivated: index => root.choices.shapeIndex = index
            Accessible.name: qsTr("Shape")
        }

        Label {
            text: qsTr("Position")
        }

        PlainComboBox {
            objectName: "position"
            model: root.choices.positionLabels
            currentIndex: root.choices.positionIndex
            onActivated: index => root.choices.positionIndex = index
            Accessible.name: qsTr("Position")
        }

        Label {
            text: qsTr("Background")
        }

        PlainComboBox {
            id: background

            objectName: "background"
            model: root.choices.backgroundLabels
            currentIndex: root.choices.backgroundIndex
            onActivated: index => root.choices.backgroundIndex = index
            Accessible.name: qsTr("Background")
        }
    }

    RowLayout {
        objectName: "customImageRow"
        Layout.fillWidth: true
        // The last of the background's choices is the custom image.
        visible: root.choices.backgroundIndex === root.choices.backgroundLabels.length - 1
        spacing: 8

        Label {
            objectName: "backgroundImageName"
            Layout.fillWidth: true
            elide: Text.ElideMiddle
            textFormat: Text.PlainText
            text: root.choices.backgroundImageName.length > 0 ? root.choices.backgroundImageName : qsTr("No image selected")
            Accessible.name: text
        }

        Button {
            objectName: "chooseBackgroundImage"
            text: qsTr("Choose Image…")
            onClicked: imageDialog.open()
            Accessible.name: text
        }
    }

    Label {
        id: importFailure

        objectName: "backgroundImportFailure"
        Layout.fillWidth: true
        visible: false
        wrapMode: Text.WordWrap
        color: "#c2410c"
        text: qsTr("The image couldn't be copied.")
        Accessible.name: text
    }

    FileDialog {
        id: imageDialog

        objectName: "backgroundImageDialog"
        fileMode: FileDialog.OpenFile
        nameFilters: [qsTr("Images (*.png *.jpg *.jpeg *.heic *.webp *.bmp)")]
        onAccepted: importFailure.visible = !root.choices.importBackgroundImage(imageDialog.selectedFile)
    }
}
