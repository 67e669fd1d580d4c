pragma ComponentBehavior: Bound
import QtQuick
import QtQuick.Controls
import Client.Common

/// The headings of the traffic's columns. Dragging a border changes the width.
Row {
    id: headings

    required property TrafficColumns columns

    objectName: "trafficHeadings"
    clip: true
    leftPadding: Theme.gap
    spacing: Theme.gap

    component Heading: Label {
        color: Theme.faintText
        font.pixelSize: Theme.smallText
        elide: Text.ElideRight
    }

    Repeater {
        model: headings.columns.titles
        Heading {
            id: heading
            required property int index
            required property string modelData
            width: Number(headings.columns.widths[index])
            text: modelData
            horizontalAlignment: headings.columns.isNumber(index) ? Text.AlignRight : Text.AlignLeft

            Rectangle {
                anchors { left: parent.right; leftMargin: Theme.gap / 2 }
                width: 1
                height: parent.height
                color: Theme.line
            }
            MouseArea {
                objectName: "border " + heading.index
                anchors { left: parent.right }
                width: Theme.gap
                height: parent.height
                cursorShape: Qt.SplitHCursor
                preventStealing: true
                onPositionChanged: mouse => {
                    const border = mapToItem(heading, mouse.x, 0).x;
                    headings.columns.setWidth(heading.index, border - Theme.gap / 2);
                }
            }
        }
    }
    Heading {
        text: qsTr("Payload")
    }
}
