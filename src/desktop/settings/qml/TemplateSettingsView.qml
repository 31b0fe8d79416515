import QtQuick

// The "Templates" tab.
SettingsPage {
    SectionHeading {
        text: qsTr("Templates")
    }
}
