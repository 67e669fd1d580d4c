pragma ComponentBehavior: Bound
import QtQuick
import Client.Common
import Client.Timeline

/// One cell of the grid: empty, or with a camera. It keeps what it showed while it is hidden.
FocusScope {
    id: cell

    required property AppState app
    required property PlayClock clock
    required property int number ///< from 0
    property bool active: false  ///< the tool bar's controls are for this one

    property var camera: null
    property bool occupied: false
    readonly property CellContent content: contents.count > 0 ? contents.itemAt(0) as CellContent : null
    readonly property VisibleRange range: VisibleRange {}
    readonly property PlayHead head: PlayHead {
        clock: cell.clock
        shown: cell.occupied && cell.visible
        onAdvanced: before => cell.range.follow(before, position)
    }

    signal inStepToggled()
    signal rangeMarked(var camera, real start, real end)

    function show(newCamera) {
        camera = newCamera;
        occupied = true;
    }

    function clear() {
        occupied = false; // first: what is shown can't do without a camera
        camera = null;
    }

    /// To the start of a bookmark, which is shown as a whole when its @p end is known.
    function goTo(start, end) {
        head.seek(start);
        range.revealRange(start, end ?? start);
    }

    function goLive() {
        head.goLive();
        range.show(head.position - range.span, head.position);
    }

    /// Plain values, for restore().
    function save() {
        return {
            camera: occupied ? camera.key : "",
            from: range.from,
            to: range.to,
            position: head.live ? 0 : head.position
        };
    }

    function restore(state) {
        const saved = app.topology.cameraWithKey(state.camera);
        const now = clock.now;
        const span = state.to - state.from;
        if (state.position > 0) {
            range.show(state.from, state.to);
            head.seek(state.position);
            head.playing = false;
        } else {
            range.show(now - span, now);
        }
        if (saved)
            show(saved);
    }

    activeFocusOnTab: true
    Accessible.role: Accessible.Pane
    Accessible.name: occupied ? qsTr("View cell %1, %2").arg(number + 1).arg(camera.name)
                              : qsTr("View cell %1, empty").arg(number + 1)

    Keys.onPressed: event => event.accepted = keys.handle(event)
    CellKeys {
        id: keys
        range: cell.range
        head: cell.head
        content: cell.content
        onLiveRequested: cell.goLive()
        onClearRequested: cell.clear()
        onInStepToggled: cell.inStepToggled()
    }

    EmptyCell {
        anchors.fill: parent
        hinting: !cell.occupied
    }
    // Not a Loader: in Qt 6.4 it can't make components that are bound to their ids.
    Repeater {
        id: contents
        model: cell.occupied && cell.visible ? 1 : 0
        CellContent {
            anchors.fill: parent
            anchors.margins: 2
            app: cell.app
            uid: "view-cell-" + cell.number
            camera: cell.camera
            range: cell.range
            head: cell.head
            onRangeMarked: (start, end) => cell.rangeMarked(cell.camera, start, end)
            onCloseRequested: cell.clear()
        }
    }
    CellFrame {
        anchors.fill: parent
        active: cell.active
        focused: cell.activeFocus
        onCameraDropped: camera => {
            cell.show(camera);
            cell.forceActiveFocus();
        }
    }
    TapHandler {
        onPressedChanged: {
            if (pressed)
                cell.forceActiveFocus();
        }
    }

    Component.onCompleted: range.show(clock.now - range.span, clock.now)
}
