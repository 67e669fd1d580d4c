import QtQml

/// Synchronises all visible cells with the active one: range, play head and playback.
QtObject {
    id: step

    required property ViewCells cells
    property bool enabled: false

    readonly property ViewCell leader: enabled ? cells.activeCell : null

    function follow() {
        for (let i = 0; i < cells.count; ++i) {
            const cell = cells.at(i);
            cell.head.led = leader !== null && cell !== leader;
            if (!cell.head.led)
                continue;
            cell.range.show(leader.range.from, leader.range.to);
            cell.head.seek(leader.head.position);
            cell.head.playing = leader.head.playing;
            cell.head.speed = leader.head.speed;
        }
    }

    onLeaderChanged: follow()

    readonly property Connections ofRange: Connections {
        target: step.leader ? step.leader.range : null
        function onChanged() {
            step.follow();
        }
    }
    readonly property Connections ofHead: Connections {
        target: step.leader ? step.leader.head : null
        function onPositionChanged() {
            step.follow();
        }
        function onPlayingChanged() {
            step.follow();
        }
        function onSpeedChanged() {
            step.follow();
        }
    }
}
