import QtQuick
import QtQuick.Controls
import QtQuick.Layouts

// The "Account" tab.
SettingsPage {
    SectionHeading {
        text: qsTr("Norvane Accounts")
    }
}
