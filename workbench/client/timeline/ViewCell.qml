pragma ComponentBehavior: Bound
import QtQuick
import Client.Common
import Client.Timeline

/// A view cell, empty or with a camera. It keeps its state while it is hidden.
FocusScope {
    id: cell

    required property AppState app
    required property PlayClock clock
    required property int number ///< from 0
    property bool active: false  ///< the tool bar controls this cell

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
        occupied = false; // first, because the content reads the camera
        camera = null;
    }

    /// Goes to a time and shows a range.
    /// @param end of the range; undefined if there is none
    function goTo(start, end) {
        head.seek(start);
        range.revealRange(start, end ?? start);
    }

    function goLive() {
        head.goLive();
        range.show(head.position - range.span, head.position);
    }

    /// @return the state for restore(), as plain values
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
    // Not a Loader, which can't create bound components in Qt 6.4.
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
