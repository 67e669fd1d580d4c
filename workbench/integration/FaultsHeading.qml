import QtQuick
import QtQuick.Controls
import Client.Common

/// What the columns of the faults are.
Row {
    spacing: Theme.gap
    bottomPadding: Theme.gap

    Repeater {
        model: [[qsTr("Connected"), 150], [qsTr("Delay, ms"), 110], [qsTr("Answers come"), 110],
            ["", 70], [qsTr("Failing code"), 90], [qsTr("Results"), 130]]
        Label {
            required property var modelData
            width: modelData[1]
            text: modelData[0]
            color: Theme.faintText
            font.pixelSize: Theme.smallText
        }
    }
}
