pragma ComponentBehavior: Bound
import QtQuick
import Client.Common
import Client.Timeline

/// The timeline of one camera: bookmarks, time axis and play head.
Item {
    id: bar

    required property VisibleRange range
    required property MarkLayout marks
    required property string timeZone ///< IANA identifier
    required property real position   ///< of the play head
    /// Start of a range that is being marked by key; its end is the play head. NaN for none.
    property real markedFrom: NaN

    readonly property real axisHeight: 16
    readonly property real laneHeight: 11

    signal seekRequested(real time)
    signal rangeMarked(real start, real end)

    function xOf(time) {
        return (time - range.from) / range.span * width;
    }

    clip: true
    Accessible.role: Accessible.Chart
    Accessible.name: qsTr("Timeline, %1 to %2").arg(axis.timeText(range.from))
                                               .arg(axis.timeText(range.to))

    // Update once per frame: the range and the rows may change many times between two frames.
    FrameUpdate {
        id: frame
        onDue: {
            axis.update();
            bar.marks.update();
        }
    }
    Connections {
        target: bar.marks
        function onOutdated() {
            frame.request();
        }
    }

    Rectangle {
        anchors.fill: parent
        color: Theme.surface
    }

    Repeater {
        model: TimeAxis {
            id: axis
            range: bar.range
            width: bar.width
            timeZone: bar.timeZone
            onOutdated: frame.request()
        }
        TimelineTick {
            axisHeight: bar.axisHeight
        }
    }

    Repeater {
        model: bar.marks
        TimelineMark {
            laneHeight: bar.laneHeight
        }
    }

    Rectangle {
        readonly property bool byMouse: !isNaN(mouse.markedFrom)
        readonly property real start: byMouse ? mouse.markedFrom : bar.markedFrom
        readonly property real end: byMouse ? mouse.pointedTime : bar.position

        visible: !isNaN(start)
        x: visible ? bar.xOf(Math.min(start, end)) : 0
        width: visible ? bar.xOf(Math.max(start, end)) - x : 0
        height: parent.height
        color: Theme.accent
        opacity: 0.4
    }

    Rectangle {
        objectName: "playHead"
        x: Math.round(bar.xOf(bar.position)) - 1
        width: 2
        height: parent.height
        visible: x > -2 && x < bar.width
        color: Theme.playHead
    }

    TimelineMouse {
        id: mouse
        objectName: "timelineMouse"
        anchors.fill: parent
        range: bar.range
        marks: bar.marks
        laneHeight: bar.laneHeight
        onSeekRequested: time => bar.seekRequested(time)
        onRangeMarked: (start, end) => bar.rangeMarked(start, end)
    }

    TimelineTip {
        axis: axis
        mouse: mouse
        marks: bar.marks
    }
}
