import QtQml

/// The present time and the ticks for pictures. All cells share one clock, so that they change in the
/// same frame.
QtObject {
    id: clock

    property bool running: true

    readonly property real now: openedAt + passed
    property real passed: 0 ///< milliseconds since the window was opened

    /// Emitted ten times a second.
    /// @param elapsed milliseconds since the last tick
    signal tick(real elapsed)

    readonly property real openedAt: Date.now()

    readonly property Timer timer: Timer {
        interval: 100
        repeat: true
        running: clock.running
        onTriggered: {
            const elapsed = Date.now() - clock.openedAt - clock.passed;
            clock.passed += elapsed;
            // Do not play the time while the machine slept.
            clock.tick(Math.min(elapsed, 1000));
        }
    }
}
