import QtQuick
import QtQuick.Controls
import QtQuick.Layouts
import NorvaneBar

// The outcome of a job in the background whose notification could not be shown.
Pane {
    id: root

    required property SubmitViewModel submit

    objectName: "backgroundResultBanner"
    padding: 8
    visible: root.submit.hasBanner
    Accessible.role: Accessible.AlertMessage
    Accessible.name: root.submit.bannerTitle + ", " + root.submit.bannerSubtitle

    background: Rectangle {
        radius: 6
        color: root.palette.alternateBase
        border.color: root.palette.mid
    }

    RowLayout {
        anchors.fill: parent
        spacing: 8

        Image {
            source: root.submit.hasBanner ? "image://symbol/" + root.submit.bannerSymbol : ""
            sourceSize.width: 20
            sourceSize.height: 20
            Accessible.ignored: true
        }

        ColumnLayout {
            Layout.fillWidth: true
            spacing: 2

            Label {
                objectName: "bannerTitle"
                Layout.fillWidth: true
                elide: Text.ElideRight
                textFormat: Text.PlainText
                font.bold: true
                text: root.submit.bannerTitle
            }

            Label {
                objectName: "bannerSubtitle"
                Layout.fillWidth: true
                wrapMode: Text.Wrap
                maximumLineCount: 3
                elide: Text.ElideRight
                textFormat: Text.PlainText
                opacity: 0.8
                text: root.submit.bannerSubtitle
            }
        }

        Button {
            objectName: "bannerRetry"
            visible: root.submit.bannerCanRetry
            text: qsTr("Retry")
            onClicked: root.submit.retryBanner()
            Accessible.name: text
        }

        ToolButton {
            id: dismiss

            objectName: "bannerDismiss"
            icon.source: "image://symbol/xmark"
            icon.color: dismiss.palette.buttonText
            onClicked: root.submit.dismissBanner()
            Accessible.name: qsTr("Dismiss")

            PlainToolTip {
                text: dismiss.Accessible.name
                visible: dismiss.hovered
            }
        }
    }
}
