import QtQuick
import QtQuick.Controls
import Client.Common
import Client.Timeline

/// The tooltip of the timeline: the texts and times of the bookmarks under the mouse, or the time.
ToolTip {
    id: tip
    objectName: "timelineTip"

    required property TimeAxis axis
    required property TimelineMouse mouse
    required property MarkLayout marks

    readonly property var bar: mouse.pointedRow >= 0 ? marks.row(mouse.pointedRow) : null

    function describe() {
        if (!bar)
            return axis.timeText(mouse.pointedTime);
        const times = axis.timeText(bar.start) + " – " + axis.timeText(bar.end);
        return bar.count > 1 ? qsTr("%1 bookmarks").arg(bar.count) + "\n" + times + "\n" + bar.text
                             : times + "\n" + bar.text;
    }

    visible: mouse.containsMouse && (bar !== null || !isNaN(mouse.markedFrom))
    text: visible ? describe() : ""
    x: Math.min(mouse.mouseX + 12, mouse.width - width)
    y: -height - 4
    delay: 0
    contentWidth: Math.min(longestLine.implicitWidth, Theme.tipWidth)

    Text {
        id: longestLine
        visible: false
        text: tip.text
        font: tip.font
    }
}
