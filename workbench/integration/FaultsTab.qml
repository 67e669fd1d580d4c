import QtQuick
import QtQuick.Controls
import QtQuick.Layouts
import Client.Common
import Integration

/// What goes wrong: at each station, and at the server to which the client is connected.
ColumnLayout {
    id: tab

    required property WorkbenchContext bench

    spacing: Theme.gap

    ServerBar {
        bench: tab.bench
        Layout.fillWidth: true
    }
    ListView {
        id: list
        objectName: "faultsList"
        model: tab.bench.faults
        clip: true
        boundsBehavior: Flickable.StopAtBounds
        Accessible.name: qsTr("Faults")
        Layout.fillWidth: true
        Layout.fillHeight: true
        header: Row {
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
        delegate: FaultsRow { }

        ScrollBar.vertical: ScrollBar { }
    }
}
