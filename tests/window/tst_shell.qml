import QtQuick
import QtTest
import Client.Common
import Integration

/// Tests the topology, the grid of view cells and the window.
WindowTest {
    id: test

    readonly property var harbour: workbench.stations[0]
    readonly property var depot: workbench.stations[1]

    name: "Shell"

    function tree() { return find("topologyTree"); }
    function row(camera) { return find("camera " + camera.key); }
    function cell(number) { return find("cell" + number); }
    function treeTexts() {
        return Array.from({ length: tree().count }, (_, i) => tree().itemAtIndex(i).text);
    }
    function focusTree() {
        keyClick(Qt.Key_T, Qt.ControlModifier);
        keyClick(Qt.Key_Down);
    }
    function showsPage(text) { tryVerify(() => find("pageText").text === text, 5000, text); }
    /// Returns the view cells of the last calls of removeTimelineModel().
    function lastRemoved(count) {
        const model = workbench.traffic;
        const name = row => model.data(model.index(row, 0), TrafficModel.NameRole);
        return Array.from({ length: model.count }, (_, row) => row)
            .filter(row => name(row) === "removeTimelineModel").slice(-count)
            .map(row => model.payloadAt(row).arguments[0]).join();
    }

    function test_filterFindsCamerasAndStations() {
        keyClick(Qt.Key_T, Qt.ControlModifier);
        type("gate");
        compare(treeTexts(), ["Harbour", "Gate"]);
        keyClick(Qt.Key_Escape);
        type("depot");
        compare(treeTexts(), ["Depot", ...depot.cameras.map(camera => camera.name)]);
    }

    function test_foldByMouse() {
        for (const count of [11, 15]) {
            mouseClick(find("station " + harbour.relayPath));
            compare(tree().count, count);
        }
    }

    function test_foldByKeys() {
        focusTree();
        for (const [key, count, index] of [
                 [Qt.Key_Left, 11, 0], [Qt.Key_Right, 15, 0], [Qt.Key_Down, 15, 1],
                 [Qt.Key_Left, 11, 0], [Qt.Key_Return, 15, 0]]) {
            keyClick(key);
            compare([tree().count, tree().currentIndex], [count, index]);
        }
    }

    function test_clickSelectsTheCamera() {
        mouseClick(row(depot.cameras[1]));
        showsPage("1 to 30 of 30");
        compare(find("bookmarkList").page.recordAt(0).cameraName, "Depot - Yard");
        mouseClick(row(depot.cameras[1]));
        showsPage("1 to 50 of 360");
        focusTree();
        keyClick(Qt.Key_Down);
        keyClick(Qt.Key_Space);
        compare(find("bookmarkPanel").app.currentCamera.key, depot.cameras[2].key);
    }

    function test_cameraGoesToAnEmptyOrTheActiveCell() {
        cell(2).clear();
        mouseDoubleClickSequence(row(depot.cameras[0]));
        compare(cell(2).camera.key, depot.cameras[0].key);
        keyClick(Qt.Key_Down);
        keyClick(Qt.Key_Return);
        compare(cell(2).camera.key, depot.cameras[1].key);
    }

    function test_cameraIsDraggedIntoACell_data() {
        return [{ tag: "empty, upwards", number: 1, camera: 3, empty: true },
                { tag: "another one's", number: 2, camera: 0, empty: false },
                { tag: "empty, downwards", number: 3, camera: 0, empty: true }];
    }
    function test_cameraIsDraggedIntoACell(data) {
        const camera = depot.cameras[data.camera];
        const whole = window.contentItem;
        const from = row(camera).mapToItem(whole, 60, 10);
        const to = cell(data.number).mapToItem(whole, 90, 60);
        if (data.empty)
            cell(data.number).clear();
        mousePress(whole, from.x, from.y);
        for (let i = 1; i <= 10; ++i)
            mouseMove(whole, from.x + (to.x - from.x) * i / 10, from.y + (to.y - from.y) * i / 10);
        const ghost = findChild(row(camera), "cameraGhost");
        verify(ghost && ghost.visible);
        for (let over = ghost.parent; over; over = over.parent)
            verify(!over.clip, "can be seen over the cells");
        mouseRelease(whole, to.x, to.y);
        compare(cell(data.number).camera.key, camera.key);
        verify(cell(data.number).activeFocus && !ghost.visible);
        compare(find("bookmarkPanel").app.currentCamera, null, "was no click");
        tryVerify(() => find("cell" + data.number).content.status === "live");
    }

    function test_dragOutsideCellsChangesNothing() {
        mouseDrag(row(depot.cameras[0]), 60, 10, 40, 300);
        compare([0, 1, 2, 3].map(i => cell(i).camera.key), harbour.cameras.map(one => one.key));
    }

    function test_stationMenuOpensByMouseAndKey() {
        for (const allowed of [true, false]) {
            lab.setSettingPermission(allowed);
            workbench.connectToServer();
            tryCompare(workbench, "settingPermission", allowed);
            focusTree();
            allowed ? keyClick(Qt.Key_Menu) : keyClick(Qt.Key_F10, Qt.ShiftModifier);
            const menu = find("stationMenu");
            tryCompare(menu, "opened", true);
            compare(menu.itemAt(3).enabled, allowed);
            compare(menu.itemAt(3).text.includes("does not allow"), !allowed);
            mouseClick(menu.itemAt(3));
            compare(find("removeAllDialog").visible, allowed);
            keyClick(Qt.Key_Escape);
            tryVerify(() => !menu.visible && !find("removeAllDialog").visible);
        }
    }

    function test_stationMenuOpensDialogs_data() {
        return [{ tag: "recent", item: 0, dialog: "recentDialog" },
                { tag: "recycle", item: 1, dialog: "recycleDialog" }];
    }
    function test_stationMenuOpensDialogs(data) {
        focusTree();
        keyClick(Qt.Key_Menu);
        const menu = find("stationMenu");
        tryCompare(menu, "opened", true);
        for (let i = 0; i <= data.item; ++i)
            keyClick(Qt.Key_Down);
        keyClick(Qt.Key_Return);
        tryCompare(find(data.dialog), "opened", true);
        keyClick(Qt.Key_Escape);
        tryCompare(find(data.dialog), "visible", false);
        tryVerify(() => tree().activeFocus);
    }

    /// Returns the relative luminance as defined by WCAG.
    function luminance(color) {
        const [r, g, b] = [color.r, color.g, color.b].map(
            part => part <= 0.04045 ? part / 12.92 : Math.pow((part + 0.055) / 1.055, 2.4));
        return 0.2126 * r + 0.7152 * g + 0.0722 * b;
    }
    function test_textHasEnoughContrast_data() {
        return [["text", ["window", "surface", "raised", "selection"]],
                ["faintText", ["window", "surface"]], ["failure", ["window", "surface"]],
                ["warning", ["window"]], ["accent", ["surface"]], ["accentText", ["accent"]]]
            .map(([tag, grounds]) => ({ tag, grounds }));
    }
    function test_textHasEnoughContrast(data) {
        for (const dark of [false, true]) {
            Theme.dark = dark;
            for (const ground of data.grounds) {
                const [low, high] = [Theme[data.tag], Theme[ground]].map(luminance).sort();
                verify((high + 0.05) / (low + 0.05) >= 4.5, `on ${ground}, ${dark ? "dark" : "light"}`);
            }
        }
    }

    function test_shortcuts_data() {
        const control = Qt.ControlModifier;
        return [
            ["Ctrl+F", Qt.Key_F, control, () => find("searchField").activeFocus],
            ["Ctrl+T", Qt.Key_T, control, () => find("topologyFilter").activeFocus],
            ["Ctrl+G", Qt.Key_G, control, () => cell(0).activeFocus],
            ["Ctrl+N", Qt.Key_N, control, () => find("addDialog").opened],
            ["Ctrl+D", Qt.Key_D, control, () => Theme.dark],
            ["F12", Qt.Key_F12, 0, () => find("drawerTabs").currentItem.activeFocus],
            ["F5", Qt.Key_F5, 0, () => workbench.stationsAsked("QueryAllBookmars").length === 3]
        ].map(([tag, key, modifier, done]) => ({ tag, key, modifier, done }));
    }
    function test_shortcuts(data) {
        find("bookmarkList").forceActiveFocus();
        workbench.forgetTraffic();
        verify(!data.done());
        keyClick(data.key, data.modifier);
        tryVerify(data.done);
    }

    function test_helpListsTheKeys() {
        for (const key of [Qt.Key_F1, "?"]) {
            keyClick(key);
            tryCompare(find("help"), "opened", true);
            const shown = texts(find("help").contentItem);
            for (const section of ["Window", "Cameras", "View cells", "Bookmarks", "Integration"])
                verify(shown.includes(section), section);
            verify(shown.length > 60, "with its keys");
            keyClick(Qt.Key_Escape);
            tryCompare(find("help"), "visible", false);
        }
    }

    function test_failureShowsANotice() {
        workbench.faults.setData(workbench.faults.index(0, 0), "rejected", FaultsModel.OrderRole);
        keyClick(Qt.Key_F5);
        const notice = find("notice");
        tryVerify(() => notice.visible && notice.failure);
        verify(notice.text.startsWith("The bookmarks could not be queried"));
        mouseClick(notice);
        tryCompare(notice, "visible", false);
    }

    function test_windowRestoresItsState() {
        window.width = 1240;
        mouseClick(find("cells6"));
        cell(5).show(depot.cameras[3]);
        cell(1).clear();
        keyClick(Qt.Key_F, Qt.ControlModifier);
        type("door");
        keyClick(Qt.Key_D, Qt.ControlModifier);
        keyClick(Qt.Key_F12);
        window.close();
        window.destroy();
        tryCompare(test, "window", null);
        Theme.dark = false;
        open();
        compare([0, 1, 5].map(i => cell(i).camera?.name ?? ""), ["Gate", "", "Office"]);
        verify(cell(5).visible && !cell(6).visible);
        showsPage("1 to 50 of 120");
        compare([window.width, window.height], [1240, 860]);
        verify(Theme.dark && find("drawerTabs").visible);
    }

    function test_beginsNoLargerThanTheScreen_data() {
        return [{ tag: "first time", kept: false, size: [1240, 700] },
                { tag: "as it was left", kept: true, size: [1240, 700] },
                { tag: "tiny screen", kept: false, room: Qt.size(800, 600), size: [1024, 640] }];
    }
    function test_beginsNoLargerThanTheScreen(data) {
        if (data.kept)
            window.close();
        window.destroy();
        tryCompare(test, "window", null);
        open({ room: data.room ?? Qt.size(1240, 700) });
        compare([window.width, window.height], data.size);
    }

    function test_cellCount_data() {
        return [1, 2, 6, 9].map(count => ({ tag: count + " cells", count: count }));
    }
    function test_cellCount(data) {
        mouseClick(find("cells" + data.count));
        const cells = Array.from({ length: 9 }, (_, i) => cell(i)).filter(one => one.visible);
        compare(cells.length, data.count);
        tryVerify(() => cells.every(one => Math.abs(one.width - cell(0).width) <= 1
                                    && Math.abs(one.height - cell(0).height) <= 1));
        const grid = find("cellGrid");
        tryVerify(() => cells.length * cell(0).width * cell(0).height
                  > 0.8 * grid.width * grid.height);
        compare(cells.filter(one => one.content).length, Math.min(4, data.count));
    }

    function test_smallestWindowShowsTheWholeToolBar() {
        window.width = window.minimumWidth;
        window.height = window.minimumHeight;
        updateLayout();
        const [button, grid] = [find("now"), find("cellGrid")];
        verify(button.mapToItem(grid, button.width, 0).x <= grid.width);
    }

    function test_emptiedCellRemovesItsTimeline() {
        const expected = "view-cell-1,view-cell-2";
        verify(lastRemoved(2) !== expected);
        mouseClick(findChild(cell(1), "closeCell"));
        mouseClick(cell(2), 40, 60);
        keyClick(Qt.Key_Delete);
        tryVerify(() => lastRemoved(2) === expected);
        verify(!cell(1).occupied && !cell(2).occupied && cell(3).occupied);
    }
}
