import QtQuick
import Client.Timeline

/// Handles the mouse on a timeline: dragging pans, the wheel zooms, Shift+drag marks a range, a double
/// click goes to a moment.
MouseArea {
    id: mouse

    required property VisibleRange range
    required property MarkLayout marks
    required property real laneHeight

    /// Start of the range that is being marked; its end is under the mouse. NaN for none.
    property real markedFrom: NaN
    readonly property real pointedTime: timeAt(mouseX)
    /// Row of the bar under the mouse, -1 for none.
    readonly property int pointedRow:
        containsMouse ? marks.rowAt(mouseX, Math.floor(mouseY / laneHeight)) : -1

    property real pressedX: 0
    property real pressedFrom: 0

    signal seekRequested(real time)
    signal rangeMarked(real start, real end)

    function timeAt(x) {
        return range.from + x * range.span / Math.max(1, width);
    }

    /// Zooms to a bar of several bookmarks, so that they get separate bars if possible.
    function magnify(bar) {
        const margin = Math.max(1000, (bar.end - bar.start) / 4);
        range.show(bar.start - margin, bar.end + margin);
    }

    acceptedButtons: Qt.LeftButton
    hoverEnabled: true
    preventStealing: true
    cursorShape: !isNaN(markedFrom) ? Qt.IBeamCursor : pressed ? Qt.ClosedHandCursor
                                                               : Qt.ArrowCursor

    onPressed: event => {
        forceActiveFocus(Qt.MouseFocusReason); // the cell does not get this press
        if (event.modifiers & Qt.ShiftModifier)
            markedFrom = timeAt(event.x);
        pressedX = event.x;
        pressedFrom = range.from;
    }
    onPositionChanged: event => {
        if (pressed && isNaN(markedFrom)) {
            const distance = (pressedX - event.x) * range.span / width;
            range.moveBy(pressedFrom + distance - range.from);
        }
    }
    onReleased: event => {
        const start = markedFrom;
        markedFrom = NaN;
        if (!isNaN(start) && Math.abs(event.x - pressedX) > 2) {
            const end = timeAt(event.x);
            rangeMarked(Math.min(start, end), Math.max(start, end));
        }
    }
    onCanceled: markedFrom = NaN
    onDoubleClicked: event => {
        const bar = pointedRow >= 0 ? marks.row(pointedRow) : null;
        if (bar && bar.count > 1)
            magnify(bar);
        else if (bar)
            range.revealRange(bar.start, bar.end);
        seekRequested(bar ? bar.start : timeAt(event.x));
    }
    onWheel: event => {
        if (event.angleDelta.y !== 0)
            range.zoomAbout(timeAt(event.x), Math.pow(1.25, -event.angleDelta.y / 120));
        else
            range.moveBy(-event.angleDelta.x / 120 * range.span / 10);
    }
}
