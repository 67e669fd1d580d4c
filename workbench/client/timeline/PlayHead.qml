import QtQml

/// The moment that a view cell shows, and how it moves on. Times in milliseconds since the epoch.
QtObject {
    id: head

    required property PlayClock clock
    /// Whether anybody looks.
    property bool shown: true
    /// Whether another head moves this one.
    property bool led: false

    property real position: 0
    property bool playing: true
    property real speed: 1

    readonly property bool live: playing && position >= clock.now - 2000

    /// It was played on from @p before.
    signal advanced(real before)

    function seek(time) {
        position = time;
    }

    /// Start and end of a bookmark that is added now. A live picture has shown the time before it,
    /// and no bookmark reaches into the future.
    function rangeForNew() {
        const length = 30000;
        const end = Math.min(position + length, clock.now);
        return [live || position >= end ? end - length : position, end];
    }

    /// Catches up with the present and stays with it.
    function goLive() {
        position = clock.now;
        speed = 1;
        playing = true;
    }

    function advance(elapsed) {
        const before = position;
        const next = before + elapsed * speed;
        // The present can't be overtaken; a moment of the future stays where it was put.
        if (live && speed >= 1)
            position = clock.now;
        else if (before < clock.now)
            position = Math.min(clock.now, next);
        advanced(before);
    }

    readonly property Connections beats: Connections {
        target: head.clock
        enabled: head.playing && head.shown && !head.led

        function onBeat(elapsed) {
            head.advance(elapsed);
        }
    }

    Component.onCompleted: position = clock.now
}
