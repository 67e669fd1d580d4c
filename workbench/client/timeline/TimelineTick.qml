import QtQuick
import Client.Common
import Client.Timeline

/// A tick of the timeline with its label.
Item {
    id: tick

    required property real tickX
    required property string label
    required property int kind
    property real axisHeight: 16

    readonly property bool dayBoundary: kind === TimeAxis.Day

    x: Math.round(tickX)
    height: parent ? parent.height : 0

    Rectangle {
        width: 1
        height: tick.height
        color: tick.dayBoundary ? Theme.faintText : Theme.line
    }
    Text {
        visible: tick.parent !== null && tick.x + x + implicitWidth <= tick.parent.width
        x: 3
        y: tick.height - tick.axisHeight
        height: tick.axisHeight
        verticalAlignment: Text.AlignVCenter
        text: tick.label
        color: tick.dayBoundary ? Theme.text : Theme.faintText
        font.pixelSize: Theme.smallText - 1
        font.bold: tick.dayBoundary
    }
}
