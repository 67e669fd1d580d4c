import QtQuick
import QtQuick.Controls
import QtQuick.Layouts
import Client.Common

/// The view cells in the middle of the window, with their tool bar. Saves and restores their state.
Pane {
    id: pane
    objectName: "cellGrid"

    required property AppState app

    property alias inStep: step.enabled
    property alias cellCount: cells.shownCount
    property alias activeIndex: cells.activeIndex
    readonly property alias activeCell: cells.activeCell

    /// Pairs of a key and its action, for the help.
    readonly property var shortcuts: [
        [qsTr("Tab, Ctrl+Arrows"), qsTr("Next cell, cell beside it")],
        [qsTr("Left, Right"), qsTr("Pan the timeline")],
        [qsTr("Page Up, Page Down"), qsTr("Pan by the whole timeline")],
        [qsTr("Shift+Left, Right"), qsTr("Move the play head")],
        [qsTr("+, −"), qsTr("Zoom the timeline")],
        [qsTr("Space"), qsTr("Play or pause")],
        [qsTr("Home"), qsTr("Go to the present")],
        [qsTr("B, N"), qsTr("Previous, next bookmark")],
        [qsTr("Z"), qsTr("Zoom to the bookmark at the play head")],
        [qsTr("I"), qsTr("Keep all cells in step with this one")],
        [qsTr("A"), qsTr("Add a bookmark at the play head")],
        [qsTr("M"), qsTr("Mark the start, then the end of a new bookmark")],
        [qsTr("Delete"), qsTr("Empty the cell")],
        [qsTr("Wheel, drag"), qsTr("Zoom, pan the timeline under the mouse")],
        [qsTr("Shift+drag"), qsTr("Mark the range of a new bookmark")],
        [qsTr("Double click"), qsTr("Go to that moment")]
    ]

    /// The user has marked a range for a new bookmark, in milliseconds since the epoch.
    signal rangeMarked(var camera, real start, real end)

    /// Shows a camera.
    /// @return its view cell
    function showCamera(camera) {
        const shown = cells.indexShowing(camera);
        activeIndex = shown >= 0 ? shown : cells.indexForNew();
        if (shown < 0)
            activeCell.show(camera);
        return activeCell;
    }

    function showBookmark(record) {
        const camera = app.topology.cameraWithKey(app.topology.keyOf(record));
        if (camera)
            showCamera(camera).goTo(record.startTimestamp, record.endTimestamp);
        else
            app.notice(qsTr("The topology has no camera for this bookmark."), true);
    }

    /// @return the state for restoreState(), as plain values
    function saveState() {
        const states = [];
        for (let i = 0; i < cells.count; ++i)
            states.push(cells.at(i).save());
        return { cellCount: cellCount, activeIndex: activeIndex, cells: states };
    }

    /// Restores a state of saveState(); shows the first cameras if it is empty.
    function restoreState(state) {
        if (!state || !state.cells) {
            showFirstCameras();
            return;
        }
        cellCount = [1, 2, 4, 6, 9].includes(state.cellCount) ? state.cellCount : 4;
        activeIndex = Math.min(state.activeIndex, cellCount - 1);
        state.cells.slice(0, cells.count).forEach((saved, i) => cells.at(i).restore(saved));
    }

    function showFirstCameras() {
        app.topology.cameras.slice(0, cellCount).forEach((camera, i) => cells.at(i).show(camera));
    }

    padding: Theme.gap

    PlayClock {
        id: playClock
    }
    CellsInStep {
        id: step
        cells: cells
    }
    Connections {
        target: pane.app
        function onCameraWanted(camera) {
            pane.showCamera(camera);
        }
        function onBookmarkWanted(record) {
            pane.showBookmark(record);
        }
    }

    ColumnLayout {
        anchors.fill: parent
        spacing: Theme.gap

        CellToolBar {
            cellCount: pane.cellCount
            head: pane.activeCell ? pane.activeCell.head : null
            canPlay: pane.activeCell !== null && pane.activeCell.occupied
            inStep: pane.inStep
            onInStepChosen: on => pane.inStep = on
            onCellCountChosen: count => pane.cellCount = count
            onLiveRequested: pane.activeCell.goLive()
            Layout.fillWidth: true
        }
        ViewCells {
            id: cells
            app: pane.app
            clock: playClock
            onInStepToggled: pane.inStep = !pane.inStep
            onRangeMarked: (camera, start, end) => pane.rangeMarked(camera, start, end)
            Layout.fillWidth: true
            Layout.fillHeight: true
        }
    }
}
