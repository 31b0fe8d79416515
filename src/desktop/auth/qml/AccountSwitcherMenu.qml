pragma ComponentBehavior: Bound

import QtQuick
import QtQuick.Controls
import NorvaneBar

// The active account's avatar; it opens the menu of the stored accounts, in which choosing another
// one switches to it and "Add Account…" asks for the settings' Account pane.
AbstractButton {
    id: root

    required property AccountsViewModel accounts

    function openMenu() {
        accountMenu.popup(root, root.width - accountMenu.width, root.height);
    }

    padding: 2
    focusPolicy: Qt.StrongFocus
    onClicked: root.openMenu()
    // Buttons take Space; Return and Enter open the menu too.
    Keys.onReturnPressed: root.openMenu()
    Keys.onEnterPressed: root.openMenu()
    Accessible.role: Accessible.ButtonMenu
    Accessible.name: qsTr("Switch Norvane account")
    Accessible.description: qsTr("Signed in as %1 — click to switch account").arg(root.accounts.activeDisplayName)

    contentItem: AccountAvatar {
        initials: root.accounts.activeAvatarText
        fill: root.accounts.activeColor
        size: 28
    }

    background: Rectangle {
        radius: height / 2
        color: "transparent"
        border.width: 2
        border.color: root.visualFocus ? root.palette.highlight : "transparent"
    }

    // The display name is the service's: shown as written.
    PlainToolTip {
        text: root.Accessible.description
        visible: root.hovered || root.visualFocus
    }

    Menu {
        id: accountMenu

        objectName: "accountMenu"

        Instantiator {
            model: root.accounts
            onObjectAdded: (index, object) => accountMenu.insertItem(index, object)
            onObjectRemoved: (index, object) => accountMenu.removeItem(object)

            delegate: PlainMenuItem {
                required property double accountID
                required property string menuTitle
                required property bool isActive

                label: menuTitle
                owner: accountMenu
                symbol: "checkmark"
                symbolShown: isActive
                Accessible.checkable: true
                Accessible.checked: isActive
                onTriggered: root.accounts.switchTo(accountID)
            }
        }

        MenuSeparator {}

        PlainMenuItem {
            objectName: "addAccountItem"
            label: qsTr("Add Account…")
            owner: accountMenu
            symbol: "checkmark"
            symbolShown: false
            onTriggered: root.accounts.addAccount()
        }
    }
}
