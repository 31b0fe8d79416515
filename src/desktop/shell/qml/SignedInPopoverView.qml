pragma ComponentBehavior: Bound

import QtQuick
import QtQuick.Controls
import QtQuick.Layouts
import NorvaneBar

// The signed-in page: who and where, the tab picker, then the composer, or in its place the page of
// the submission it started, or the Tasks tab; and the banner of a background job's outcome.
Pane {
    id: root

    required property AuthViewModel auth
    required property AccountsViewModel accounts
    required property LocationPickerViewModel location
    required property AttachmentListModel attachments
    required property ComposerViewModel composer
    required property TemplateMenuViewModel templates
    required property AttachmentExporterViewModel exporter
    required property SubmitViewModel submit
    required property SettingsLauncher settingsLauncher
    required property TabPickerViewModel tabs
    required property MyDayViewModel myDay
    required property ScreenRecordingSetupViewModel recording

    padding: 16
    // The column sets the page's height; the drop overlay only covers it.
    contentHeight: column.implicitHeight

    ColumnLayout {
        id: column

        anchors.fill: parent
        spacing: 12

        Label {
            text: qsTr("NorvaneBar")
            font.bold: true
            font.pixelSize: 18
            Accessible.role: Accessible.Heading
            Accessible.name: text
        }

        RowLayout {
            Layout.fillWidth: true
            spacing: 8

            Label {
                objectName: "signedInUser"
                Layout.fillWidth: true
                wrapMode: Text.WordWrap
                textFormat: Text.PlainText
                text: qsTr("Signed in as %1").arg(root.auth.userDisplayName)
                Accessible.name: text
            }

            ToolButton {
                id: settingsButton

                objectName: "settingsButton"
                icon.source: "image://symbol/gearshape"
                icon.color: palette.buttonText
                onClicked: root.settingsLauncher.open()
                Accessible.name: qsTr("NorvaneBar settings")

                PlainToolTip {
                    text: settingsButton.Accessible.name
                    visible: settingsButton.hovered
                }
            }

            AccountSwitcherMenu {
                objectName: "accountSwitcher"
                accounts: root.accounts
            }
        }

        LocationSelector {
            Layout.fillWidth: true
            picker: root.location
        }

        ComposeTabPicker {
            Layout.fillWidth: true
            tabs: root.tabs
        }

        Loader {
            id: page

            readonly property int shown: root.submit.page
            readonly property int tab: root.tabs.activeTab
            readonly property bool recordingSetup: root.recording.setupShown

            function show() {
                if (page.recordingSetup) {
                    page.setSource("../../recording/qml/ScreenRecordingSetupSheet.qml", {
                        "setup": root.recording
                    });
                    return;
                }
                if (page.tab === TabPickerViewModel.Tasks) {
                    page.setSource("../../myday/qml/MyDayView.qml", {
                        "myDay": root.myDay
                    });
                    return;
                }
                switch (page.shown) {
                case SubmitViewModel.Progress:
                    page.setSource("../../submit/qml/SubmitProgressView.qml", {
                        "submit": root.submit
                    });
                    break;
                case SubmitViewModel.Done:
                    page.setSource("../../submit/qml/SubmitDoneView.qml", {
                        "submit": root.submit
                    });
                    break;
                case SubmitViewModel.BulkDone:
                    page.setSource("../../submit/qml/BulkDoneView.qml", {
                        "submit": root.submit
                    });
                    break;
                case SubmitViewModel.Failed:
                    page.setSource("../../submit/qml/SubmitFailedView.qml", {
                        "submit": root.submit
                    });
                    break;
                case SubmitViewModel.Composer:
                default:
                    page.setSource("../../compose/qml/ComposerView.qml", {
                        "composer": root.composer,
                        "attachments": root.attachments,
                        "templates": root.templates,
                        "exporter": root.exporter,
                        "recording": root.recording
                    });
                    break;
                }
            }

            objectName: "submitPage"
            Layout.fillWidth: true
            Layout.fillHeight: true
            focus: true
            onShownChanged: page.show()
            onTabChanged: page.show()
            onRecordingSetupChanged: page.show()
            Component.onCompleted: page.show()
        }

        BackgroundJobResultBanner {
            Layout.fillWidth: true
            submit: root.submit
        }
    }

    ScreenRecordingAlert {
        setup: root.recording
    }

    Rectangle {
        objectName: "dropOverlay"
        anchors.fill: parent
        visible: root.attachments.isDropTargeted
        color: Qt.rgba(root.palette.highlight.r, root.palette.highlight.g, root.palette.highlight.b, 0.15)
        border.color: root.palette.highlight
        border.width: 2
        radius: 6

        Label {
            anchors.centerIn: parent
            text: qsTr("Drop to attach")
            font.bold: true
            font.pixelSize: 16
            Accessible.name: text
        }
    }
}
