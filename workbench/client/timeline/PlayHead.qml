import QtQml

/// The moment that a view cell shows, and its playback. Times are milliseconds since the epoch.
QtObject {
    id: head

    required property PlayClock clock
    /// False stops playback, for a hidden cell.
    property bool shown: true
    /// True if another play head moves this one, see CellsInStep.
    property bool led: false

    property real position: 0
    property bool playing: true
    property real speed: 1

    readonly property bool live: playing && position >= clock.now - 2000

    /// Playback has moved the position from @p before.
    signal advanced(real before)

    function seek(time) {
        position = time;
    }

    /// Returns start and end of a new bookmark: from the position on, in live view the time before it.
    /// It does not end in the future.
    function rangeForNew() {
        const length = 30000;
        const end = Math.min(position + length, clock.now);
        return [live || position >= end ? end - length : position, end];
    }

    /// Moves to the present and follows it.
    function goLive() {
        position = clock.now;
        speed = 1;
        playing = true;
    }

    function advance(elapsed) {
        const before = position;
        const next = before + elapsed * speed;
        // Playback stops at the present; a position in the future does not move.
        if (live && speed >= 1)
            position = clock.now;
        else if (before < clock.now)
            position = Math.min(clock.now, next);
        advanced(before);
    }

    readonly property Connections ticks: Connections {
        target: head.clock
        enabled: head.playing && head.shown && !head.led

        function onTick(elapsed) {
            head.advance(elapsed);
        }
    }

    Component.onCompleted: position = clock.now
}
