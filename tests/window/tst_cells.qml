import QtQuick
import QtTest
import Client.Common
import Client.Timeline

WindowTest {
    id: test

    readonly property var camera: workbench.stations[0].cameras[1]
    property CellGrid grid
    property ViewCell cell ///< the cell that shows the camera
    property TimelineBar bar

    name: "Cells"

    /// Shows a camera in the first cell, paused, with a timeline of one day.
    function showCamera() {
        grid = find("cellGrid");
        marked.clear();
        cell = grid.showCamera(camera);
        cell.head.playing = false;
        cell.forceActiveFocus();
        bar = findChild(cell, "timelineBar");
        tryVerify(() => bar.marks.rowCount() > 20);
    }

    function test_wheelZoomsAndDragPans() {
        showCamera();
        const timeAt = x => cell.range.from + x * cell.range.span / bar.width;
        const pixel = timeAt(1) - timeAt(0);
        const pointed = timeAt(40);
        mouseWheel(bar, 40, 5, 0, 240);
        verify(cell.range.span / bar.width < pixel / 1.5);
        fuzzyCompare(timeAt(40), pointed, pixel);

        workbench.forgetTraffic();
        const dragged = timeAt(20 - 4 * bar.width / 2);
        for (let i = 0; i < 4; ++i)
            mouseDrag(bar, 20, 5, bar.width / 2, 0);
        fuzzyCompare(timeAt(20), dragged, pixel * 4);
        tryVerify(() => workbench.stationsAsked("QueryBookmarkForTimeline").includes(camera.relayPath));
    }

    function test_labelsOfTheTimelineAreNotCutOff() {
        showCamera();
        const [from, to] = [cell.range.from, cell.range.to];
        let shown = 0;
        for (let quarter = 0; quarter < 24; ++quarter) {
            cell.range.show(from + quarter * 900000, to + quarter * 900000);
            updateLayout();
            const labels = Array.from(bar.children).filter(item => item.label).map(tick => tick.children[1]);
            const visible = labels.filter(label => label.visible);
            shown += visible.length;
            verify(visible.every(label => label.mapToItem(bar, label.width, 0).x <= bar.width));
        }
        verify(shown > 8);
    }

    FontMetrics { id: metrics; font.pixelSize: Theme.normalText }
    SignalSpy { id: marked; target: test.grid; signalName: "rangeMarked" }
    function test_shiftDragMarksARange() {
        showCamera();
        const from = cell.range.from;
        mouseDrag(bar, 60, 5, -40, 0, Qt.LeftButton, Qt.ShiftModifier);
        compare(cell.range.from, from);
        const [markedCamera, ...times] = marked.signalArguments[0];
        compare(markedCamera.key, camera.key);
        compare(times.map(time => Math.round((time - from) / cell.range.span * bar.width)), [20, 60]);
    }

    function test_doubleClickGoesToTheBookmark() {
        showCamera();
        find("searchField").forceActiveFocus();
        const mark = bar.marks.row(3);
        mouseDoubleClickSequence(bar, mark.barX + mark.barWidth / 2, mark.lane * bar.laneHeight + 5);
        compare(cell.head.position, mark.start);
        const share = 900000 / cell.range.span; // of a bookmark
        verify(share >= 0.05 && share < 0.1, share);
        keyClick(Qt.Key_Z);
        fuzzyCompare(cell.range.span, 2 * 900000, 2);
        const from = cell.range.from;
        keyClick(Qt.Key_PageUp); // the key works in the cell
        verify(cell.range.from < from);
    }

    function test_keysControlTheCell() {
        showCamera();
        [Qt.Key_B, Qt.Key_B].forEach(key => keyClick(key));
        compare(cell.head.position, workbench.now - 2 * 3600000, "the last but one bookmark");
        keyClick(Qt.Key_M);
        keyClick(Qt.Key_N);
        keyClick(Qt.Key_M);
        compare(marked.signalArguments[marked.count - 1][2], workbench.now - 3600000);
        keyClick(Qt.Key_Escape); // closes the dialog of the last key
        tryVerify(() => cell.activeFocus);
        keyClick(Qt.Key_Space);
        tryVerify(() => cell.head.position > workbench.now - 3600000);
        keyClick(Qt.Key_Right, Qt.ControlModifier);
        compare(grid.activeIndex, cell.number + 1);
        keyClick(Qt.Key_Left, Qt.ControlModifier);
        keyClick(Qt.Key_Delete);
        verify(!cell.occupied && !findChild(cell, "timelineBar"));
    }

    function test_keysMoveTheTimeline() {
        showCamera();
        const { from, span } = cell.range;
        for (const [key, movedTo, factor] of [
                 [Qt.Key_Left, -0.1, 1], [Qt.Key_PageUp, -1.1, 1], [Qt.Key_PageDown, -0.1, 1],
                 [Qt.Key_Right, 0, 1], [Qt.Key_Minus, null, 1.25], [Qt.Key_Plus, 0, 1]]) {
            keyClick(key);
            fuzzyCompare(cell.range.span, factor * span, 2);
            if (movedTo !== null)
                fuzzyCompare(cell.range.from, from + movedTo * span, 2);
        }
        const before = cell.head.position;
        keyClick(Qt.Key_M);
        keyClick(Qt.Key_Left, Qt.ShiftModifier);
        keyClick(Qt.Key_M); // a range without the mouse
        fuzzyCompare(marked.signalArguments[0][1], before - span / 50, 2);
        compare(marked.signalArguments[0][2], before);
        keyClick(Qt.Key_Escape);
        tryVerify(() => cell.activeFocus);
        keyClick(Qt.Key_PageUp);
        keyClick(Qt.Key_Home);
        verify(cell.head.live && cell.range.to >= cell.head.position - 1);
    }

    function test_toolBarPlaysTheActiveCell() {
        showCamera();
        cell.head.seek(workbench.now - 3600000);
        find("speed").forceActiveFocus();
        keyClick(Qt.Key_Down);
        compare(cell.head.speed, 2);
        mouseClick(find("play"));
        tryVerify(() => cell.head.position > workbench.now - 3600000);
        find("now").forceActiveFocus();
        keyClick(Qt.Key_Space);
        verify(cell.head.live);
    }

    function test_cellsInStepFollowTheActiveCell() {
        showCamera();
        const other = find("cell0");
        const alike = () => other.range.from === cell.range.from && other.range.span === cell.range.span
              && other.head.position === cell.head.position && other.head.playing === cell.head.playing;
        keyClick(Qt.Key_Plus);
        verify(!alike());
        keyClick(Qt.Key_I);
        verify(find("inStep").checked && alike());
        [Qt.Key_PageUp, Qt.Key_B, Qt.Key_Space].forEach(key => keyClick(key));
        const before = other.head.position;
        tryVerify(() => other.head.position > before && alike());
        other.forceActiveFocus(); // now the active cell
        keyClick(Qt.Key_Home);
        verify(cell.head.live && alike());
        mouseClick(find("inStep"));
        other.forceActiveFocus();
        keyClick(Qt.Key_Minus);
        verify(!alike());
    }

    function test_tooltipShowsTheBookmark() {
        showCamera();
        const mark = bar.marks.row(2);
        mouseMove(bar, mark.barX + mark.barWidth / 2, mark.lane * bar.laneHeight + 5);
        const tip = findChild(bar, "timelineTip");
        tryVerify(() => tip.visible && tip.text.endsWith("\n" + mark.text));
        const [times, text] = tip.text.split("\n").map(line => metrics.advanceWidth(line));
        verify(mark.text.length > 5);
        verify(tip.width < Math.max(times, text) + 20, "as wide as its longest line");
        cell.head.seek(mark.start);
        keyClick(Qt.Key_A);
        tryCompare(find("addDialog"), "opened", true);
        const part = name => findChild(find("addDialog").contentItem, name);
        compare(part("addStart").moment, mark.start);
        compare(part("chosenCameras").text, "Harbour - Quay north");
    }

    /// The new bookmark starts at the play head of the active cell; in live view it ends there.
    function test_newBookmarkIsAtTheActivePlayHead_data() {
        return [{ tag: "live, A", key: Qt.Key_A, modifiers: Qt.NoModifier, live: true },
                { tag: "live, Ctrl+N", key: Qt.Key_N, modifiers: Qt.ControlModifier, live: true },
                { tag: "paused, Ctrl+N", key: Qt.Key_N, modifiers: Qt.ControlModifier, live: false }];
    }
    function test_newBookmarkIsAtTheActivePlayHead(data) {
        showCamera();
        const past = workbench.now - 3600000;
        data.live ? cell.goLive() : cell.head.seek(past);
        keyClick(data.key, data.modifiers);
        const dialog = find("addDialog");
        tryCompare(dialog, "opened", true);
        const part = name => findChild(dialog.contentItem, name);
        const [start, end] = [part("addStart").moment, part("addEnd").moment];
        compare(part("chosenCameras").text, "Harbour - Quay north");
        compare(end - start, 30000);
        verify(data.live ? end <= Date.now() : start === past);
    }

    function test_failingStationIsNamedAndQueriedAgain() {
        showCamera();
        const status = findChild(cell, "cellStatus");
        workbench.failStation(camera.relayPath, true);
        cell.range.moveBy(-9 * cell.range.span);
        tryCompare(status, "text", "station failed");
        workbench.failStation(camera.relayPath, false);
        cell.goLive();
        mouseClick(findChild(cell, "retry"));
        tryVerify(() => status.text === "live" && bar.marks.rowCount() > 20);
    }

    function test_savedStateIsRestored() {
        showCamera();
        const start = workbench.now - 5 * 24 * 3600000;
        grid.showBookmark({ cameraID: camera.cameraID, relayPath: camera.relayPath, startTimestamp: start });
        compare(grid.activeCell, cell, "the camera is shown already");
        const state = JSON.stringify(grid.saveState());
        cell.clear();
        grid.restoreState(JSON.parse(state));
        compare([cell.camera.key, cell.head.position], [camera.key, start]);
        verify(cell.range.from < start && start < cell.range.to, "it can be seen");
    }
}
