import QtQuick

// The floor the Tasks list's scrolling is read against: 1,000 rows of plain text, as tall as the
// Tasks list's rows on average.
ListView {
    id: list

    property real rowHeight: 40

    clip: true
    reuseItems: true
    model: 1000
    delegate: Text {
        required property int index

        width: ListView.view.width
        height: list.rowHeight
        leftPadding: 8
        verticalAlignment: Text.AlignVCenter
        text: qsTr("Review task %1 of the café backlog").arg(index)
    }
}
