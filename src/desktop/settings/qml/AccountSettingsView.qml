import QtQuick

// The "Account" tab.
SettingsPage {
    SectionHeading {
        text: qsTr("Norvane Accounts")
    }
}
