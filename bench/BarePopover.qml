import QtQuick
import QtQuick.Controls

Pane {
    width: 380
    height: 460

    Label {
        text: "Baseline"
    }
}
