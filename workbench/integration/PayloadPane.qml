pragma ComponentBehavior: Bound
import QtQuick
import QtQuick.Controls
import QtQuick.Layouts
import Client.Common
import Integration

/// Shows the payload of a traffic entry with headings.
ColumnLayout {
    id: pane

    required property TrafficModel traffic
    /// Row of the traffic; -1 for none.
    required property int row
    property string difference: "" ///< from what the entry was compared with

    spacing: 2

    Label {
        objectName: "difference"
        visible: text !== ""
        text: pane.difference
        leftPadding: Theme.gap
        textFormat: Text.PlainText
        wrapMode: Text.Wrap
        maximumLineCount: 4
        elide: Text.ElideRight
        font.pixelSize: Theme.smallText
        color: Theme.failure
        Layout.fillWidth: true
    }
    Row {
        objectName: "payloadHeadings"
        spacing: view.columnSpacing
        Layout.preferredWidth: 0 // follows the width of the view, and must not keep it from shrinking

        Repeater {
            model: [qsTr("Key"), qsTr("Value"), qsTr("Type")]
            Label {
                required property int index
                required property string modelData
                width: view.widthOf(index)
                leftPadding: Theme.gap
                text: modelData
                color: Theme.faintText
                font.pixelSize: Theme.smallText
            }
        }
    }
    PayloadView {
        id: view
        traffic: pane.traffic
        row: pane.row
        Layout.fillWidth: true
        Layout.fillHeight: true
    }
}
