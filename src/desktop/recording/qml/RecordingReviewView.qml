import QtQuick
import QtQuick.Controls
import QtQuick.Layouts
import QtMultimedia
import NorvaneBar

// "Review Recording": the movie played inline, its length and size, the size warning, and the
// buttons "Attach to task" (also Return), save a copy, "Re-record" and "Discard". Playback stops
// before any of them; saving pauses it, and the movie stays under review.
Page {
    id: root

    required property RecordingReviewViewModel review

    padding: 12

    // Stops the movie, then does what the button asks.
    function leave(action: var) {
        player.stop();
        action();
    }

    MediaPlayer {
        id: player

        objectName: "player"
        source: root.review.movie
        videoOutput: video
        audioOutput: AudioOutput {}
        // A new movie is held still once loaded, so that its first picture shows before it plays.
        property bool showsFirstPicture: true

        onSourceChanged: player.showsFirstPicture = true
        onMediaStatusChanged: {
            if (player.showsFirstPicture && player.mediaStatus === MediaPlayer.LoadedMedia) {
                player.showsFirstPicture = false;
                player.pause();
            }
        }
    }

    ColumnLayout {
        anchors.fill: parent
        spacing: 8

        Rectangle {
            Layout.fillWidth: true
            Layout.preferredHeight: 300
            Layout.fillHeight: true
            color: "black"

            VideoOutput {
                id: video

                objectName: "video"
                anchors.fill: parent
            }

            TapHandler {
                onTapped: player.playbackState === MediaPlayer.PlayingState ? player.pause() : player.play()
            }
        }

        RowLayout {
            Layout.fillWidth: true
            spacing: 8

            Button {
                objectName: "playButton"
                Keys.onReturnPressed: clicked()
                Keys.onEnterPressed: clicked()
                focusPolicy: Qt.TabFocus
                icon.source: player.playbackState === MediaPlayer.PlayingState ? "image://symbol/pause.fill"
                                                                                : "image://symbol/play.fill"
                icon.color: palette.buttonText
                display: AbstractButton.IconOnly
                text: player.playbackState === MediaPlayer.PlayingState ? qsTr("Pause") : qsTr("Play")
                Accessible.name: text
                onClicked: player.playbackState === MediaPlayer.PlayingState ? player.pause() : player.play()
            }

            Label {
                objectName: "info"
                Layout.fillWidth: true
                textFormat: Text.PlainText
                text: root.review.info
                Accessible.name: text
            }
        }

        Label {
            objectName: "warning"
            Layout.fillWidth: true
            visible: text.length > 0
            wrapMode: Text.Wrap
            textFormat: Text.PlainText
            color: "#c2410c"
            text: root.review.warning
            Accessible.name: text
        }

        RowLayout {
            Layout.fillWidth: true
            spacing: 8

            Button {
                id: saveButton

                objectName: "saveButton"
                Keys.onReturnPressed: clicked()
                Keys.onEnterPressed: clicked()
                icon.source: "image://symbol/square.and.arrow.down"
                icon.color: palette.buttonText
                display: AbstractButton.IconOnly
                text: qsTr("Save the recording to disk")
                Accessible.name: text
                onClicked: {
                    player.pause();
                    root.review.save();
                }

                PlainToolTip {
                    text: saveButton.text
                    visible: saveButton.hovered
                }
            }

            Item {
                Layout.fillWidth: true
            }

            Button {
                objectName: "discardButton"
                Keys.onReturnPressed: clicked()
                Keys.onEnterPressed: clicked()
                text: qsTr("Discard")
                Accessible.name: text
                onClicked: root.leave(root.review.discard)
            }

            Button {
                objectName: "reRecordButton"
                Keys.onReturnPressed: clicked()
                Keys.onEnterPressed: clicked()
                text: qsTr("Re-record")
                Accessible.name: text
                onClicked: root.leave(root.review.reRecord)
            }

            Button {
                id: attachButton

                objectName: "attachButton"
                Keys.onReturnPressed: clicked()
                Keys.onEnterPressed: clicked()
                highlighted: true
                text: qsTr("Attach to task")
                Accessible.name: text
                onClicked: root.leave(root.review.attach)
            }
        }
    }

    // Return takes the button that has the keyboard, and attaches from anywhere else.
    Keys.onReturnPressed: root.leave(root.review.attach)
    Keys.onEnterPressed: root.leave(root.review.attach)

    AttachmentSaveDialogs {
        exporter: root.review.exporter
    }

    // A new movie starts from its beginning, and one that leaves review stops.
    Connections {
        target: root.review

        function onChanged() {
            player.stop();
            attachButton.forceActiveFocus();
        }
    }

    Window.onVisibilityChanged: if (Window.visibility === Window.Hidden) player.stop()
    Component.onCompleted: attachButton.forceActiveFocus()
}
