import QtQuick
import QtQuick.Controls
import QtQuick.Layouts

// The "Templates" tab.
SettingsPage {
    SectionHeading {
        text: qsTr("Templates")
    }
}
