import QtQuick
import QtQuick.Controls
import QtQuick.Layouts
import NorvaneBar

// The "Attachments" tab: where a task's files go, the chosen provider's settings, and "Test
// connection", which checks them without sending anything. The R2 key pair lives in the system
// keyring; the other texts are saved as they are typed.
SettingsPage {
    id: root

    required property AttachmentStorageViewModel storage

    readonly property int cloudinary: 1
    readonly property int cloudflareR2: 2
    readonly property int googleDrive: 3

    Label {
        text: qsTr("Store attachments with")
    }

    PlainComboBox {
        objectName: "storageProvider"
        model: root.storage.providerNames
        currentIndex: root.storage.providerIndex
        onActivated: index => root.storage.providerIndex = index
        Accessible.name: qsTr("Store attachments with")
    }

    SettingsNote {
        objectName: "providerNote"
        text: root.storage.providerIndex === 0
              ? qsTr("Attachments upload directly to Norvane when you create a task.")
              : qsTr("External providers upload files before task creation and insert viewable links into the task description. Norvane stores files as native attachments.")
    }

    ColumnLayout {
        objectName: "cloudinarySection"
        Layout.fillWidth: true
        visible: root.storage.providerIndex === root.cloudinary
        spacing: 8

        SectionHeading {
            text: qsTr("Cloudinary")
        }

        SettingsTextField {
            objectName: "cloudName"
            label: qsTr("Cloud name")
            text: root.storage.cloudinaryCloudName
            onTextEdited: root.storage.cloudinaryCloudName = text
        }

        SettingsTextField {
            objectName: "uploadPreset"
            label: qsTr("Upload preset")
            text: root.storage.cloudinaryUploadPreset
            onTextEdited: root.storage.cloudinaryUploadPreset = text
        }

        SettingsNote {
            text: qsTr("Create an unsigned upload preset in Cloudinary Dashboard → Settings → Upload. Only the cloud name and preset are stored locally.")
        }

        LinkButton {
            text: qsTr("Cloudinary upload presets")
            link: "https://cloudinary.com/documentation/upload_presets"
        }
    }

    ColumnLayout {
        objectName: "cloudflareR2Section"
        Layout.fillWidth: true
        visible: root.storage.providerIndex === root.cloudflareR2
        spacing: 8

        SectionHeading {
            text: qsTr("Cloudflare R2")
        }

        SettingsTextField {
            objectName: "accountID"
            label: qsTr("Account ID")
            text: root.storage.r2AccountID
            onTextEdited: root.storage.r2AccountID = text
        }

        SettingsTextField {
            objectName: "bucket"
            label: qsTr("Bucket name")
            text: root.storage.r2Bucket
            onTextEdited: root.storage.r2Bucket = text
        }

        SettingsTextField {
            objectName: "publicURLBase"
            label: qsTr("Public URL base")
            placeholderText: qsTr("https://files.example.com")
            text: root.storage.r2PublicURLBase
            onTextEdited: root.storage.r2PublicURLBase = text
        }

        SettingsNote {
            text: qsTr("Use a public bucket or custom domain that serves uploaded objects over HTTPS.")
        }

        LinkButton {
            text: qsTr("Cloudflare R2 docs")
            link: "https://developers.cloudflare.com/r2/"
        }

        SectionHeading {
            text: qsTr("R2 credentials")
        }

        SettingsNote {
            text: qsTr("Access keys are stored in the system keyring, not in settings.json.")
        }

        SettingsTextField {
            objectName: "accessKeyID"
            label: qsTr("Access key ID")
            text: root.storage.r2AccessKeyID
            onTextEdited: root.storage.r2AccessKeyID = text
        }

        SettingsTextField {
            objectName: "secretAccessKey"
            label: qsTr("Secret access key")
            echoMode: TextInput.Password
            text: root.storage.r2SecretAccessKey
            onTextEdited: root.storage.r2SecretAccessKey = text
        }
    }

    ColumnLayout {
        objectName: "googleDriveSection"
        Layout.fillWidth: true
        visible: root.storage.providerIndex === root.googleDrive
        spacing: 8

        SectionHeading {
            text: qsTr("Google Drive")
        }

        SettingsNote {
            text: qsTr("Uploads go to files your app creates and are shared as “anyone with the link.” Optionally paste a Drive folder ID to upload into a specific folder.")
        }

        SettingsTextField {
            objectName: "folderID"
            label: qsTr("Folder ID (optional)")
            placeholderText: qsTr("Drive root")
            text: root.storage.googleDriveFolderID
            onTextEdited: root.storage.googleDriveFolderID = text
        }

        StatusLine {
            objectName: "googleConnection"
            symbol: root.storage.googleConnected ? "checkmark.circle.fill" : "circle"
            text: root.storage.googleConnected ? qsTr("Connected") : qsTr("Not connected")
        }

        RowLayout {
            spacing: 8

            Button {
                objectName: "signInWithGoogle"
                text: qsTr("Sign in with Google")
                enabled: !root.storage.isConnectingGoogle
                onClicked: root.storage.connectGoogle()
                Accessible.name: text
            }

            Button {
                objectName: "disconnectGoogle"
                text: qsTr("Disconnect")
                enabled: root.storage.googleConnected && !root.storage.isConnectingGoogle
                onClicked: root.storage.disconnectGoogle()
                Accessible.name: text
            }
        }

        // The browser never says when the person gives up, so the wait can be ended here.
        RowLayout {
            objectName: "googleSignInWaiting"
            Layout.fillWidth: true
            visible: root.storage.isConnectingGoogle
            spacing: 8

            BusyIndicator {
                running: parent.visible
                implicitWidth: 24
                implicitHeight: 24
                Accessible.ignored: true
            }

            SettingsNote {
                Layout.fillWidth: true
                text: qsTr("Finish signing in with Google in your browser.")
            }

            Button {
                objectName: "cancelGoogleSignIn"
                text: qsTr("Cancel")
                onClicked: root.storage.cancelConnectingGoogle()
                Accessible.name: qsTr("Cancel Google sign-in")
            }
        }
    }

    Button {
        objectName: "testConnection"
        Layout.topMargin: 8
        text: qsTr("Test connection")
        enabled: !root.storage.isTesting
        onClicked: root.storage.testConnection()
    }

    StatusLine {
        objectName: "testResult"
        visible: root.storage.testResult.length > 0
        symbol: root.storage.testSucceeded ? "checkmark.circle.fill" : "xmark.circle.fill"
        text: root.storage.testResult
        accessibleRole: root.storage.testSucceeded ? Accessible.StaticText : Accessible.AlertMessage
    }
}
