import QtQuick
import QtQuick.Controls
import QtQuick.Layouts

// A tab's page: its sections one below the other, scrolled when the window is too short.
ScrollView {
    id: root

    default property alias sections: column.data

    contentWidth: availableWidth
    padding: 16

    ColumnLayout {
        id: column

        width: root.availableWidth
        spacing: 8
    }
}
