import QtQuick
import QtQuick.Controls
import QtQuick.Layouts
import NorvaneBar

// The button that signs in with the pasted token, at the right, with a busy indicator while the
// sign-in runs.
RowLayout {
    id: root

    required property OnboardingModel form
    required property string buttonText

    Item {
        Layout.fillWidth: true
    }

    BusyIndicator {
        running: root.form.isBusy
        visible: running
        implicitWidth: 24
        implicitHeight: 24
        Accessible.ignored: !running
    }

    Button {
        objectName: "connectButton"
        text: root.buttonText
        highlighted: true
        enabled: !root.form.isBusy && root.form.token.trim().length > 0
        onClicked: root.form.connect()
        Accessible.name: text
    }
}
