import QtQuick
import QtQuick.Controls

// The floor the field chips' row is read against: the same texts as plain Labels in Qt's own Flow.
Flow {
    id: root

    required property list<string> labels

    spacing: 6

    Repeater {
        model: root.labels

        Label {
            required property string modelData

            text: modelData
        }
    }
}
