pragma ComponentBehavior: Bound
import QtQuick
import QtQuick.Controls
import QtQuick.Layouts
import Client.Common
import Integration

/// Shows for each signal of the plug-in the number of emissions and the last arguments.
ColumnLayout {
    id: pane

    required property PluginConsole plugConsole

    spacing: Theme.gap

    RowLayout {
        Label {
            text: qsTr("Signals")
            color: Theme.faintText
            leftPadding: Theme.gap
            Layout.fillWidth: true
        }
        Button {
            objectName: "resetCounts"
            text: qsTr("Reset")
            onClicked: pane.plugConsole.resetCounts()
        }
    }
    ListView {
        id: list
        objectName: "signalCounts"
        model: pane.plugConsole.signalNames
        clip: true
        activeFocusOnTab: true
        boundsBehavior: Flickable.StopAtBounds
        Accessible.role: Accessible.List
        Accessible.name: qsTr("Signals")
        Layout.fillWidth: true
        Layout.fillHeight: true

        ScrollBar.vertical: ScrollBar { }
        delegate: RowLayout {
            id: row
            required property string modelData
            readonly property var last: pane.plugConsole.emitted[modelData]
            readonly property int count: last ? last.count : 0
            width: list.width
            Accessible.role: Accessible.ListItem
            Accessible.name: qsTr("%1, %2 times").arg(modelData).arg(count)

            Label {
                text: row.modelData
                font.pixelSize: Theme.smallText
                elide: Text.ElideRight
                leftPadding: Theme.gap
                color: row.count > 0 ? Theme.text : Theme.faintText
                Layout.fillWidth: true
            }
            Label {
                text: row.last ? row.last.arguments : ""
                elide: Text.ElideRight
                font.family: "monospace"
                font.pixelSize: Theme.smallText
                Layout.maximumWidth: 90
            }
            Label {
                text: row.count
                font.bold: row.count > 0
                color: row.count > 0 ? Theme.text : Theme.faintText
                horizontalAlignment: Text.AlignRight
                rightPadding: Theme.margin
                Layout.preferredWidth: 34
            }
        }
    }
}
