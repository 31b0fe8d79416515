import QtQuick
import QtQuick.Controls
import NorvaneBar

// The popover's root: the page follows the sign-in state.
Pane {
    id: root

    required property AuthViewModel auth
    required property OnboardingModel onboarding
    required property LocationViewModel location
    required property AttachmentListModel attachments

    width: 380
    height: 460
    padding: 0
    focus: true

    background: Rectangle {
        color: root.palette.window
        border.color: root.palette.mid
    }

    Accessible.role: Accessible.Pane
    Accessible.name: "NorvaneBar"

    Loader {
        anchors.fill: parent
        focus: true
        anchors.margins: 1
        sourceComponent: {
            switch (root.auth.phase) {
            case AuthViewModel.Validating:
                return connecting;
            case AuthViewModel.SignedIn:
                return signedIn;
            case AuthViewModel.SignedOut:
            default:
                return onboardingPage;
            }
        }
    }

    Component {
        id: connecting

        Item {
            Label {
                objectName: "connecting"
                anchors.centerIn: parent
                text: "Connecting to Norvane…"
                Accessible.name: text
            }
        }
    }

    Component {
        id: onboardingPage

        OnboardingView {
            model: root.onboarding
        }
    }

    Component {
        id: signedIn

        SignedInPopoverView {
            auth: root.auth
            location: root.location
            attachments: root.attachments
        }
    }
}
