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

        TextField {
            id: tokenField

            // Qt 6.4 drops Accessible.name on a password field: SecretFieldAccessible names the
            // field from this and shows assistive technology the dots, never the token.
            readonly property string accessibleName: qsTr("Norvane personal API token")

            objectName: "tokenField"
            Layout.fillWidth: true
            focus: true
            echoMode: TextInput.Password
            placeholderText: qsTr("Personal API token (pk_…)")
            enabled: !root.model.isBusy
            text: root.model.token
            onTextEdited: root.model.token = text
            onAccepted: root.model.connect()
            Accessible.name: tokenField.accessibleName
            Accessible.passwordEdit: true
        }

        // The mark says it is an error; the text keeps the window's text colour, readable in light
        // and dark.
        RowLayout {
            Layout.fillWidth: true
            visible: root.model.errorMessage.length > 0
            spacing: 8

            Image {
                Layout.alignment: Qt.AlignTop
                // Asked for only when shown: the first picture loads the SVG renderer.
                source: root.model.errorMessage.length > 0 ? "image://symbol/xmark.circle.fill" : ""
                sourceSize.width: 16
                sourceSize.height: 16
                Accessible.ignored: true
            }

            Label {
                objectName: "errorMessage"
                Layout.fillWidth: true
                wrapMode: Text.WordWrap
                textFormat: Text.PlainText
                text: root.model.errorMessage
                Accessible.role: Accessible.AlertMessage
                Accessible.name: text
            }
        }

        Button {
            id: tokenPageLink

            objectName: "tokenPageLink"
            flat: true
            leftPadding: 0
            text: qsTr("Find your token: Norvane → Settings → Apps")
            contentItem: Label {
                text: tokenPageLink.text
                color: root.palette.link
                font.underline: true
            }
            onClicked: Qt.openUrlExternally(root.model.tokenPageURL)
            Accessible.role: Accessible.Link
            Accessible.name: text
        }

        RowLayout {
            Layout.fillWidth: true

            Item {
                Layout.fillWidth: true
            }

            BusyIndicator {
                running: root.model.isBusy
                visible: running
                implicitWidth: 24
                implicitHeight: 24
            }

            Button {
                objectName: "connectButton"
                text: qsTr("Connect")
                highlighted: true
                enabled: !root.model.isBusy && root.model.token.trim().length > 0
                onClicked: root.model.connect()
                Accessible.name: text
            }
        }

        Item {
            Layout.fillHeight: true
        }
    }
}
