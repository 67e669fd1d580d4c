import QtQml

/// The present and the beat of all pictures: one for all cells, so that they change in the same
/// frame.
QtObject {
    id: clock

    property bool running: true

    readonly property real now: openedAt + passed
    property real passed: 0 ///< milliseconds since the window was opened

    /// Ten times a second. @p elapsed: milliseconds since the last one.
    signal beat(real elapsed)

    readonly property real openedAt: Date.now()

    readonly property Timer timer: Timer {
        interval: 100
        repeat: true
        running: clock.running
        onTriggered: {
            const elapsed = Date.now() - clock.openedAt - clock.passed;
            clock.passed += elapsed;
            // What was missed while the machine slept is not played.
            clock.beat(Math.min(elapsed, 1000));
        }
    }
}
