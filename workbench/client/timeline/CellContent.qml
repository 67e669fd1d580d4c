import QtQuick
import QtQuick.Layouts
import Client.Common
import Client.Timeline

/// The content of a view cell that shows a camera: header, picture and timeline. Exists only while the
/// cell is visible.
ColumnLayout {
    id: content

    required property AppState app
    required property string uid
    required property var camera
    required property VisibleRange range
    required property PlayHead head

    property real markedFrom: NaN ///< start of a range being marked by key; NaN for none

    readonly property string status: feed.failed ? feed.stationState === "failing"
            ? qsTr("station failed") : qsTr("a timeline failed")
        : feed.stationState === "slow" ? qsTr("waiting for the station…")
        : head.live ? qsTr("live")
        : head.playing ? qsTr("playing") : qsTr("paused")

    signal rangeMarked(real start, real end)
    signal closeRequested()

    /// The first call marks the start of a range, the second its end.
    function mark() {
        const start = markedFrom;
        markedFrom = isNaN(start) ? head.position : NaN;
        if (!isNaN(start))
            rangeMarked(Math.min(start, head.position), Math.max(start, head.position));
    }

    function addHere() {
        rangeMarked(...head.rangeForNew());
    }

    /// Goes to the next or previous bookmark. If none is loaded, moves to times not loaded yet.
    function goToBookmark(forward) {
        const start = forward ? marks.startAfter(head.position) : marks.startBefore(head.position);
        if (start >= 0) {
            head.seek(start);
            range.reveal(start);
        } else {
            range.moveBy(forward ? range.span : -range.span);
        }
    }

    /// Shows the bookmark at the play head, with a margin of half its length on each side.
    function zoomToBookmark() {
        for (let row = 0; row < marks.rowCount(); ++row) {
            const bar = marks.row(row);
            if (bar.start > head.position || head.position > bar.end)
                continue;
            const margin = (bar.end - bar.start) / 2;
            range.show(bar.start - margin, bar.end + margin);
            return;
        }
    }

    spacing: 0

    TimelineFeed {
        id: feed
        app: content.app
        uid: content.uid
        camera: content.camera
        range: content.range
    }
    MarkLayout {
        id: marks
        source: feed.model
        range: content.range
        width: bar.width
        lanes: Math.max(1, Math.floor((bar.height - bar.axisHeight) / bar.laneHeight))
        camera: content.camera
    }

    CellHeader {
        cameraName: content.camera.name
        stationName: content.camera.stationName
        status: content.status
        failed: feed.failed
        onRetryRequested: feed.reload()
        onAddRequested: content.addHere()
        onCloseRequested: content.closeRequested()
        Layout.fillWidth: true
    }
    CameraPicture {
        cameraKey: content.camera.key
        caption: content.camera.name
        time: content.head.position
        timeZone: content.app.timeZone
        Accessible.role: Accessible.Graphic
        Accessible.name: qsTr("Picture of %1 at %2").arg(caption).arg(timeText)
        Layout.fillWidth: true
        Layout.fillHeight: true
    }
    TimelineBar {
        id: bar
        objectName: "timelineBar"
        range: content.range
        marks: marks
        timeZone: content.app.timeZone
        position: content.head.position
        markedFrom: content.markedFrom
        onSeekRequested: time => content.head.seek(time)
        onRangeMarked: (start, end) => content.rangeMarked(start, end)
        Layout.fillWidth: true
        Layout.preferredHeight: content.height < 190 ? 38 : 60
    }
}
