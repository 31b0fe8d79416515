import QtQuick
import QtQuick.Controls
import QtQuick.Layouts
import NorvaneBar

// First sign-in: the person pastes a personal API token.
Pane {
    id: root

    required property OnboardingModel model

    padding: 20
    focus: true

    // The token field takes the keyboard as soon as the page shows.
    Component.onCompleted: tokenField.forceActiveFocus()

    ColumnLayout {
        anchors.fill: parent
        spacing: 12

        Label {
            text: qsTr("Connect to Norvane")
            font.bold: true
            font.pixelSize: 18
            Accessible.role: Accessible.Heading
            Accessible.name: text
        }

        Label {
            Layout.fillWidth: true
            wrapMode: Text.WordWrap
            text: qsTr("NorvaneBar creates Norvane tasks straight from your panel. Paste your personal API token to get started.")
            Accessible.name: text
        }

        TokenField {
            id: tokenField

            objectName: "tokenField"
            Layout.fillWidth: true
            focus: true
            form: root.model
            accessibleName: qsTr("Norvane personal API token")
            placeholderText: qsTr("Personal API token (pk_…)")
        }

        TokenFormMessage {
            Layout.fillWidth: true
            form: root.model
        }

        LinkButton {
            objectName: "tokenPageLink"
            text: qsTr("Find your token: Norvane → Settings → Apps")
            link: root.model.tokenPageURL
        }

        ConnectButtonRow {
            Layout.fillWidth: true
            form: root.model
            buttonText: qsTr("Connect")
        }

        Item {
            Layout.fillHeight: true
        }
    }
}
