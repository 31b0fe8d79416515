pragma ComponentBehavior: Bound

import QtQuick
import QtQuick.Controls
import QtQuick.Layouts
import NorvaneBar

// The Account pane of the settings: the stored accounts, each to switch to or remove, and the token
// form that adds another one.
Pane {
    id: root

    required property AccountsViewModel accounts
    readonly property OnboardingModel form: root.accounts.tokenForm
    readonly property bool hasAccounts: root.accounts.count > 0

    padding: 16

    ColumnLayout {
        anchors.left: parent.left
        anchors.right: parent.right
        spacing: 12

        Label {
            text: qsTr("Norvane Accounts")
            font.bold: true
            Accessible.role: Accessible.Heading
            Accessible.name: text
        }

        Label {
            Layout.fillWidth: true
            wrapMode: Text.WordWrap
            text: qsTr("Personal API tokens are stored in the system keyring, one per account. Switch anytime from here or from the account menu in the popover.")
            Accessible.name: text
        }

        Repeater {
            objectName: "accountRows"
            model: root.accounts

            RowLayout {
                id: accountRow

                required property double accountID
                required property string displayName
                required property string email
                required property string avatarText
                required property string accountColor
                required property string menuTitle
                required property bool isActive
                required property bool isSwitching

                Layout.fillWidth: true
                spacing: 8

                AccountAvatar {
                    initials: accountRow.avatarText
                    fill: accountRow.accountColor
                    size: 32
                }

                ColumnLayout {
                    Layout.fillWidth: true
                    spacing: 0

                    Label {
                        Layout.fillWidth: true
                        elide: Text.ElideRight
                        textFormat: Text.PlainText
                        font.bold: true
                        text: accountRow.displayName
                        Accessible.name: text
                    }

                    Label {
                        Layout.fillWidth: true
                        visible: accountRow.email.length > 0
                        elide: Text.ElideRight
                        textFormat: Text.PlainText
                        color: root.palette.placeholderText
                        text: accountRow.email
                        Accessible.name: text
                    }
                }

                Label {
                    objectName: "activeCapsule"
                    visible: accountRow.isActive
                    leftPadding: 8
                    rightPadding: 8
                    topPadding: 2
                    bottomPadding: 2
                    text: qsTr("Active")
                    color: root.palette.highlightedText
                    background: Rectangle {
                        radius: height / 2
                        color: root.palette.highlight
                    }
                    Accessible.name: text
                }

                BusyIndicator {
                    running: accountRow.isSwitching
                    visible: running
                    implicitWidth: 24
                    implicitHeight: 24
                    Accessible.ignored: !running
                }

                Button {
                    objectName: "switchButton"
                    visible: !accountRow.isActive
                    enabled: !accountRow.isSwitching
                    text: qsTr("Switch")
                    onClicked: root.accounts.switchTo(accountRow.accountID)
                    Accessible.name: text
                    Accessible.description: accountRow.menuTitle
                }

                ToolButton {
                    id: removeAccount

                    objectName: "removeButton"
                    icon.source: "image://symbol/minus.circle"
                    display: AbstractButton.IconOnly
                    onClicked: root.accounts.remove(accountRow.accountID)
                    Accessible.name: qsTr("Remove account")
                    Accessible.description: accountRow.menuTitle

                    PlainToolTip {
                        text: removeAccount.Accessible.name
                        visible: removeAccount.hovered || removeAccount.visualFocus
                    }
                }
            }
        }

        Label {
            objectName: "addAccountTitle"
            Layout.topMargin: 8
            text: root.hasAccounts ? qsTr("Add Another Account") : qsTr("Norvane Account")
            font.bold: true
            Accessible.role: Accessible.Heading
            Accessible.name: text
        }

        Label {
            Layout.fillWidth: true
            wrapMode: Text.WordWrap
            text: qsTr("Find your token in Norvane under Settings → Apps → API Token. You can add as many accounts as you like — for example a personal and a company account.")
            Accessible.name: text
        }

        TokenField {
            objectName: "tokenField"
            Layout.fillWidth: true
            form: root.form
            accessibleName: qsTr("Personal API token")
            placeholderText: qsTr("Personal API token")
        }

        LinkButton {
            objectName: "tokenPageLink"
            text: qsTr("Get your token…")
            link: root.form.tokenPageURL
        }

        TokenFormMessage {
            Layout.fillWidth: true
            form: root.form
        }

        ConnectButtonRow {
            Layout.fillWidth: true
            form: root.form
            buttonText: root.hasAccounts ? qsTr("Add Account") : qsTr("Connect")
        }
    }
}
