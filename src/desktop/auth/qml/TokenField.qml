import QtQuick
import QtQuick.Controls
import NorvaneBar

// The secret field a personal API token is pasted into; Return signs in.
TextField {
    id: root

    required property OnboardingModel form
    // Qt 6.4 drops Accessible.name on a password field: SecretFieldAccessible names the field from
    // this and shows assistive technology the dots, never the token.
    required property string accessibleName

    echoMode: TextInput.Password
    enabled: !root.form.isBusy
    text: root.form.token
    onTextEdited: root.form.token = text
    onAccepted: root.form.connect()
    Accessible.name: root.accessibleName
    Accessible.passwordEdit: true
}
