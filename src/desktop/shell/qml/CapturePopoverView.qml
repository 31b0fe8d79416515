import QtQuick
import QtQuick.Controls
import QtQuick.Window
import NorvaneBar

// The popover's root: the page follows the sign-in state.
Pane {
    id: root

    required property AuthViewModel auth
    required property OnboardingModel onboarding
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

    // The popover is as tall as its page asks, within bounds; a taller page scrolls inside.
    readonly property int shortest: 240
    readonly property int tallest: Math.max(root.shortest, Math.min(640, Screen.desktopAvailableHeight - 16))

    // A menu or popover open in the page has the keyboard; the popover is then as tall as it may be,
    // so that the open one fits whole.
    readonly property bool popupOpen: {
        for (let item = root.Window.activeFocusItem; item; item = item.parent) {
            if (item === root.Overlay.overlay)
                return true;
        }
        return false;
    }

    width: 380
    height: root.popupOpen ? root.tallest : Math.max(root.shortest, Math.min(root.tallest, Math.ceil(page.implicitHeight) + 2))
    padding: 0
    focus: true

    background: Rectangle {
        color: root.palette.window
        border.color: root.palette.mid
    }

    Accessible.role: Accessible.Pane
    Accessible.name: qsTr("NorvaneBar")

    // The page of the sign-in phase, made when the phase turns to it and handed its view models as
    // initial properties: from inside a Component, this root is reachable only by an unqualified lookup.
    Loader {
        id: page

        readonly property int phase: root.auth.phase

        function show() {
            switch (page.phase) {
            case AuthViewModel.Validating:
                page.sourceComponent = connecting;
                break;
            case AuthViewModel.SignedIn:
                page.setSource("SignedInPopoverView.qml", {
                    "auth": root.auth,
                    "accounts": root.accounts,
                    "location": root.location,
                    "attachments": root.attachments,
                    "composer": root.composer,
                    "templates": root.templates,
                    "exporter": root.exporter,
                    "submit": root.submit,
                    "settingsLauncher": root.settingsLauncher,
                    "tabs": root.tabs,
                    "myDay": root.myDay,
                    "recording": root.recording
                });
                break;
            case AuthViewModel.SignedOut:
            default:
                page.setSource("../../auth/qml/OnboardingView.qml", {
                    "model": root.onboarding
                });
                break;
            }
        }

        anchors.fill: parent
        anchors.margins: 1
        focus: true
        onPhaseChanged: page.show()
        Component.onCompleted: page.show()
    }

    Component {
        id: connecting

        Item {
            Label {
                objectName: "connecting"
                anchors.centerIn: parent
                text: qsTr("Connecting to Norvane…")
                Accessible.name: text
            }
        }
    }
}
