import QtQuick
import QtQuick.Controls
import QtTest
import Client.Common
import Integration

/// Tests the integrators' drawer: its tabs, and the effect of faults on the window.
WindowTest {
    id: test

    readonly property var harbour: workbench.stations[0]
    readonly property var trafficOfAdd: [
        "call addBookmark", "send AddBookmark", "answer AddBookmark", "signal addBookmarkResponsed"]

    name: "Drawer"

    function list() { return find("trafficList"); }
    function openTab(number) {
        keyClick(Qt.Key_F12);
        updateLayout();
        mouseClick(find("drawerTabs").itemAt(number));
        updateLayout();
    }
    function fault(name) { return findChild(find("faultsList").itemAtIndex(2), name); }
    function retype(field, text) {
        mouseClick(field);
        keyClick(Qt.Key_A, Qt.ControlModifier);
        keyClick(Qt.Key_Delete);
        type(text);
    }
    function addByKeys(text) {
        find("bookmarkPanel").app.currentCamera = harbour.cameras[0];
        keyClick(Qt.Key_N, Qt.ControlModifier);
        tryCompare(find("addDialog"), "opened", true);
        type(text);
        keyClick(Qt.Key_Return);
        tryCompare(find("addDialog"), "visible", false);
        tryCompare(workbench, "outstanding", 0);
    }
    function showsLast(entries) {
        const row = i => list().itemAtIndex(list().count - entries.length + i);
        const says = (entry, i) => row(i) && row(i).kind + " " + row(i).name === entry;
        tryVerify(() => entries.every(says), 5000, entries.join());
    }
    function treeShows(state) {
        const row = find("station " + harbour.relayPath);
        tryVerify(() => row.Accessible.name === "Harbour, " + state, 20000, state);
        compare(texts(row).includes(state), state !== "connected");
    }
    /// Checks the accessible name of a row of the harbour's traffic.
    function trafficHasRow(text) {
        mouseClick(find("drawerTabs").itemAt(0));
        retype(find("trafficSearch"), "relay-1");
        keyClick(Qt.Key_Return);
        const names = () => Array.from({ length: list().count }, (_, i) => list().itemAtIndex(i))
            .map(row => row ? row.Accessible.name : "");
        tryVerify(() => names().some(name => name.includes(text)), 5000, text);
    }
    function panelNames(station) {
        tryVerify(() => find("queryProgress").visible === (station !== "")
                  && find("queryProgress").text.includes(station), 20000, station);
    }

    /// Filters the traffic for additions and adds a bookmark.
    function searchAndAdd(description) {
        openTab(0);
        mouseClick(find("trafficSearch"));
        type("addbookmark");
        keyClick(Qt.Key_Return);
        const before = list().count;
        addByKeys(description);
        tryVerify(() => list().count === before + trafficOfAdd.length);
        showsLast(trafficOfAdd);
    }

    function test_consoleCallsAMethod() {
        openTab(4);
        mouseClick(find("methodSearch"));
        type("forrecent");
        keyClick(Qt.Key_Down);
        keyClick(Qt.Key_Up);
        mouseClick(find("methodSearch"));
        keyClick(Qt.Key_Return);
        retype(find("argument recentCnt"), "300");
        keyClick(Qt.Key_Return);
        verify(find("callOutcome").text.includes("from 0 to 255"));
        retype(find("argument recentCnt"), "3");
        keyClick(Qt.Key_Return);
        compare(find("callOutcome").text, "true");
        tryVerify(() => texts(find("signalCounts")).join().includes(
            "queryBookmarkForRecentResponsed,[true],1"));
        retype(find("argument recentCnt"), "5");
        keyClick(Qt.Key_Return);
        compare(find("callHistory").count, 2);
        for (const count of ["3", "5", "3", "3"]) {
            mouseClick(find("callHistory").itemAtIndex(count === "5" ? 0 : 1));
            compare(find("argument recentCnt").text, count);
            retype(find("argument recentCnt"), "7");
        }
        mouseClick(find("drawerTabs").itemAt(0));
        updateLayout();
        tryVerify(() => list().count > 3);
        showsLast(["call queryBookmarkForRecent", "send QueryBookmarkForRecent",
                   "answer QueryBookmarkForRecent", "signal queryBookmarkForRecentResponsed"]);
    }

    /// Records keep the texts of the zone at their arrival.
    function test_reconnectUpdatesTextsForAnotherZone() {
        const list = find("bookmarkList").page;
        const before = list.recordAt(0).displayTimeRange;
        openTab(2);
        retype(find("serverZone"), "Asia/Tokyo");
        mouseClick(find("reconnect"));
        tryVerify(() => list.recordAt(0).displayTimeRange !== before);
        retype(find("serverZone"), "Moon/Base");
        mouseClick(find("reconnect"));
        tryVerify(() => find("notice").text.includes("time zone Moon/Base is unknown"));
        verify(find("serverTime").text.includes("unknown zone Moon/Base"));
        retype(find("serverZone"), "Europe/Berlin");
        mouseClick(find("reconnect"));
        tryVerify(() => list.recordAt(0).displayTimeRange === before);
    }

    function test_trafficShowsAnAddition() {
        searchAndAdd("Crane stuck");
        for (const kind of ["send", "answer", "signal", "call"]) {
            mouseClick(find("show-" + kind));
            showsLast(trafficOfAdd.filter(entry => !entry.startsWith(kind)));
            mouseClick(find("show-" + kind));
            showsLast(trafficOfAdd);
        }
    }

    function test_payloadAsTreeAndJson_data() {
        return [{ tag: "by key", copy: () => keyClick(Qt.Key_C, Qt.ControlModifier),
                  copyEntry: () => keyClick(Qt.Key_C, Qt.ControlModifier | Qt.ShiftModifier) },
                { tag: "by mouse", copy: () => mouseClick(find("copyPayload")),
                  copyEntry: () => mouseClick(find("copyEntry")) }];
    }
    function test_payloadAsTreeAndJson(data) {
        searchAndAdd("Rope torn");
        tryVerify(() => list().atYEnd, 5000, "rows have their positions");
        updateLayout();
        mouseClick(list().itemAtIndex(list().count - 3));
        compare(list().currentIndex, list().count - 3);
        const tree = find("payloadTree");
        tryVerify(() => texts(tree).includes("\"Rope torn\""));
        verify(texts(tree).includes("Description"));
        const type = tree.itemAtCell(PayloadTree.TypeColumn, 0);
        verify(type.x + type.implicitWidth <= tree.width && type.text !== "", "the type is visible");
        compare(texts(find("payloadHeadings")), ["Key", "Value", "Type"]);
        data.copy();
        retype(find("trafficSearch"), "");
        keyClick(Qt.Key_V, Qt.ControlModifier);
        const copied = JSON.parse(find("trafficSearch").text);
        compare([copied.Description, copied.CameraID], ["Rope torn", harbour.cameras[0].cameraID]);
        retype(find("trafficSearch"), "addbookmark");
        keyClick(Qt.Key_Return);
        mouseClick(list().itemAtIndex(list().count - 3));
        data.copyEntry();
        retype(find("trafficSearch"), "");
        keyClick(Qt.Key_V, Qt.ControlModifier);
        const entry = JSON.parse(find("trafficSearch").text);
        compare([entry.kind, entry.name, entry.value.Description], ["send", "AddBookmark", "Rope torn"]);
    }

    function test_faultChangesTheWindow_data() {
        return [{ tag: "failing", logged: "(relay-1) failed", spoken: "relay-1 code 9",
                  turn: on => {
                      retype(fault("code"), on ? "9" : "");
                      keyClick(Qt.Key_Return);
                  } },
                { tag: "disconnected", logged: "SendCommand failed", spoken: "relay-1 rejected",
                  turn: () => mouseClick(fault("connected")) }];
    }
    function test_faultChangesTheWindow(data) {
        workbench.log.clear();
        for (const on of [true, false]) {
            openTab(2);
            data.turn(on);
            keyClick(Qt.Key_F5);
            treeShows(on ? data.tag : "connected");
            panelNames(on ? "Harbour" : "");
            if (on)
                trafficHasRow(data.spoken);
            keyClick(Qt.Key_F12);
        }
        openTab(1);
        tryVerify(() => texts(find("logList")).some(text => text.includes(data.logged)));
        const search = find("logSearch");
        retype(search, data.logged);
        keyClick(Qt.Key_Return);
        tryVerify(() => find("logList").count > 0);
        mouseClick(find("logList").itemAtIndex(0));
        keyClick(Qt.Key_C, Qt.ControlModifier);
        retype(search, "");
        keyClick(Qt.Key_V, Qt.ControlModifier);
        verify(search.text.includes(" error ") && search.text.includes(data.logged), search.text);
    }

    function test_unansweredCommandIsMarkedAndCounted() {
        workbench.faults.setData(workbench.faults.index(2, 0), 1500, FaultsModel.DelayRole);
        openTab(0);
        workbench.traffic.clear();
        keyClick(Qt.Key_F5);
        const rows = () => Array.from({ length: list().count }, (_, i) => list().itemAtIndex(i))
            .filter(row => row && row.kind !== "signal");
        const call = () => rows().find(row => row.name === "queryAllBookmarks");
        tryVerify(() => call() && call().progress === "2 of 3");
        compare(rows().filter(row => row.progress === "no answer").length, 1);
        tryCompare(find("unanswered"), "text", "1 without an answer"); // others may be under way
        tryVerify(() => rows().filter(row => /^\d+ ms$/.test(row.progress)).length >= 4);
        verify(rows().every(row => row.call === call().call || row.depth === 0 || row.kind === "call"));
        tryVerify(() => call().progress === "3 of 3" && !find("unanswered").visible);
    }

    function test_filterExpressionIsCompletedAndChecked() {
        openTab(0);
        workbench.traffic.paused = true;
        const field = find("trafficSearch");
        mouseClick(field);
        type("not kind:se");
        tryVerify(() => texts(find("completions").contentItem).join().includes("not kind:send"));
        keyClick(Qt.Key_Tab);
        compare(field.text, "not kind:send ");
        tryVerify(() => field.activeFocus && !find("completions").visible);
        keyClick(Qt.Key_Return);
        const shown = list().count;
        tryVerify(() => list().itemAtIndex(shown - 1));
        verify(Array.from({ length: shown }, (_, i) => list().itemAtIndex(i))
               .every(row => !row || row.kind !== "send"));
        type("or (");
        keyClick(Qt.Key_Return);
        tryVerify(() => find("filterError").text.startsWith("character 19: "), 5000, find("filterError").text);
        compare(list().count, shown, "as before the mistake");
        list().forceActiveFocus();
        compare(field.color, Theme.failure);
        field.forceActiveFocus();
        keyClick(Qt.Key_Escape);
        tryVerify(() => list().count > shown);
        type("st");
        tryVerify(() => find("completions").visible);
        keyClick(Qt.Key_Escape);
        tryVerify(() => !find("completions").visible);
        compare(field.text, "st", "the first Esc closes the completions only");
    }

    function test_columnWidthsAreRestored() {
        openTab(0);
        const name = () => find("trafficHeadings").children[3];
        const before = name().width;
        mouseDrag(find("border 3"), 2, 5, 40, 0);
        tryVerify(() => name().width > before + 20);
        const changed = name().width;
        window.destroy();
        tryCompare(test, "window", null);
        open();
        openTab(0);
        compare(name().width, changed);
    }

    /// With the longest names, a rejected command and one without an answer.
    function test_columnsFitIntoTheSmallestWindow() {
        openTab(0);
        window.width = window.minimumWidth;
        window.height = window.minimumHeight;
        updateLayout();
        tryVerify(() => find("cell0").content.status === "live");
        workbench.faults.setData(workbench.faults.index(2, 0), "rejected", FaultsModel.OrderRole);
        workbench.faults.setData(workbench.faults.index(3, 0), 1500, FaultsModel.DelayRole);
        plugin.queryAllBookmarks();
        plugin.updateRecycleSetting(72, true);
        tryVerify(() => workbench.outstanding === 1);
        workbench.traffic.paused = true;
        workbench.traffic.paused = false; // shows all that has passed
        const shown = new Set();
        const headings = find("trafficHeadings").children;
        for (let i = list().count - 1; i >= 0; --i) { // the latest first, before its answer comes
            list().positionViewAtIndex(i, ListView.Contain);
            const row = list().itemAtIndex(i);
            const cells = row.contentItem.children;
            for (let column = 0; column < 7; ++column) {
                shown.add(cells[column].text);
                verify(!cells[column].truncated, cells[column].text);
                compare(cells[column].mapToItem(null, 0, 0).x, headings[column].mapToItem(null, 0, 0).x);
            }
            verify(cells[7].x + cells[7].width <= row.width && cells[7].width > 60, "payload");
        }
        list().currentIndex = Array.from({ length: list().count }, (_, i) => i).find(
            i => workbench.traffic.data(workbench.traffic.index(i, 0), TrafficModel.SummaryRole).startsWith("{Bookmarks: [{"));
        const tree = find("payloadTree");
        tree.expand(0);
        tryVerify(() => tree.itemAtCell(PayloadTree.TypeColumn, 1));
        for (const [row, type] of ["QVariantList", "QVariantMap"].entries()) {
            const cell = tree.itemAtCell(PayloadTree.TypeColumn, row);
            compare([cell.text, cell.contentItem.truncated], [type, false]);
            verify(cell.mapToItem(null, cell.width, 0).x <= window.width);
        }
        for (const text of ["queryBookmarkForTimelineResponsed", "relay-1", "rejected", "no answer"])
            verify(shown.has(text), text);
        tryCompare(workbench, "outstanding", 0);
    }

    function test_consoleFitsIntoTheSmallestWindow() {
        window.width = window.minimumWidth;
        window.height = window.minimumHeight;
        openTab(4);
        mouseClick(find("methodSearch"));
        type("addbookmark");
        keyClick(Qt.Key_Return);
        const tab = find("consoleTab");
        const bottomOf = item => item.mapToItem(tab, 0, item.height).y;
        for (let i = 0; i < 7; ++i)
            keyClick(Qt.Key_Tab);
        verify(find("argument group").activeFocus);
        updateLayout();
        verify(bottomOf(find("argument group")) <= bottomOf(find("callMethod")) - find("callMethod").height);
        find("argument endTimestamp").forceActiveFocus();
        type("x");
        keyClick(Qt.Key_Return);
        updateLayout();
        verify(find("callOutcome").text.startsWith("endTimestamp: expected a whole number"));
        verify(bottomOf(find("callOutcome")) <= tab.height);
        const rows = Array.from(find("signalCounts").contentItem.children).filter(row => row.count > 0);
        verify(rows.length > 0 && rows.every(row => !row.children[0].truncated));
    }

    function test_faultsAreSavedAndLoaded() {
        const part = (dialog, name) => findChild(dialog.contentItem, name);
        const press = (button, dialog) => {
            mouseClick(find(button));
            tryCompare(find(dialog), "opened", true);
            return find(dialog);
        };
        openTab(2);
        retype(fault("code"), "9");
        keyClick(Qt.Key_Return);
        for (const again of [false, true]) {
            const save = press("saveFaults", "saveFaultsDialog");
            compare(part(save, "savePath").text !== "", again);
            part(save, "savePath").text = lab.faultsFile();
            compare(texts(save.contentItem).some(text => text.includes("will be replaced")), again);
            keyClick(Qt.Key_Return);
            tryCompare(save, "visible", false);
        }
        mouseClick(find("removeFaults"));
        compare(fault("code").text, "");
        const load = press("loadFaults", "loadFaultsDialog");
        compare(part(load, "savePath").text, lab.faultsFile());
        keyClick(Qt.Key_Return);
        tryCompare(load, "visible", false);
        compare(fault("code").text, "9");
    }

    function test_delayedStationIsSlowUntilFaultsAreRemoved() {
        openTab(2);
        retype(fault("delay"), "2500");
        keyClick(Qt.Key_Return);
        keyClick(Qt.Key_F5);
        tryVerify(() => find("queryProgress").text === "2 of 3 stations");
        treeShows("slow");
        mouseClick(find("removeFaults"));
        compare(fault("delay").value, 0);
        keyClick(Qt.Key_F5);
        treeShows("connected");
    }

    function test_faultOfOneCommandAffectsOnlyThat() {
        openTab(2);
        find("faultyCommand").forceActiveFocus();
        keyClick(Qt.Key_Down);
        compare(find("faultyCommand").displayText, "AddBookmark");
        retype(fault("code"), "9");
        keyClick(Qt.Key_Return);
        plugin.addBookmark("camera-11", "location-1", "relay-1", 1, 2, "", "", "");
        trafficHasRow("answer AddBookmark relay-1 code 9");
        plugin.addBookmarks([{ CameraID: "camera-11", LocationID: "location-1", relayPath: "relay-1" }],
                            1, 2, "", "", "");
        trafficHasRow("answer AddBookmarks relay-1 code 0");
        workbench.faults.command = "";
    }

    function test_withoutPermissionActionsAreDisabled() {
        const button = find("deleteSelected");
        openTab(2);
        mouseClick(find("permission"));
        mouseClick(find("reconnect"));
        tryCompare(workbench, "settingPermission", false);
        mouseClick(find("row-0"));
        mouseMove(button, 5, 5);
        tryVerify(() => button.ToolTip.visible && button.ToolTip.text.includes("does not allow"));
        mouseClick(button);
        verify(!find("deleteDialog").visible);
    }

    function test_bookmarkOfAnotherClientAppears() {
        const bar = findChild(find("cell0"), "timelineBar");
        tryVerify(() => bar.marks.rowCount() > 20);
        const shows = () => Array.from({ length: bar.marks.rowCount() }, (_, i) => bar.marks.row(i))
            .some(mark => mark.start >= workbench.now);
        verify(!shows());
        openTab(2);
        mouseClick(find("addByOther"));
        tryVerify(shows);
    }

    function test_searchByKey_data() {
        return [{ tag: "traffic", tab: 0, list: "trafficList", field: "trafficSearch" },
                { tag: "log", tab: 1, list: "logList", field: "logSearch" }];
    }
    function test_searchByKey(data) {
        openTab(data.tab);
        find(data.list).forceActiveFocus();
        keyClick("/");
        verify(find(data.field).activeFocus);
        type("nothing like it");
        tryCompare(find(data.list), "count", 0);
        keyClick(Qt.Key_Escape);
        tryVerify(() => find(data.field).appliedText === "");
    }

    function test_savedSessionIsReplayed() {
        addByKeys("Played again");
        openTab(0);
        tryVerify(() => list().atYEnd && list().count > 20, 5000, "shows the latest");
        const [button, dialog] = [find("saveTraffic"), find("saveDialog")];
        const part = name => findChild(dialog.contentItem, name) || findChild(dialog.footer, name);
        for (const [file, problem] of [["/none/s.jsonl", "/none/s.jsonl: "], [lab.sessionFile(), ""]]) {
            button.forceActiveFocus();
            keyClick(Qt.Key_Space);
            tryCompare(dialog, "opened", true);
            verify(part("savePath").text.endsWith(".jsonl"));
            part("savePath").text = file;
            keyClick(Qt.Key_Return);
            compare(dialog.error.startsWith(problem) && dialog.opened, problem !== "");
            keyClick(Qt.Key_Escape);
            tryCompare(dialog, "visible", false);
        }
        mouseClick(find("openRecording"));
        tryCompare(find("openDialog"), "opened", true);
        compare(find("openDialog").path, lab.sessionFile(), "the file that was saved");
        keyClick(Qt.Key_Return);
        tryCompare(find("openDialog"), "visible", false);
        updateLayout();
        mouseClick(find("replayRecording"));
        tryCompare(find("openedState"), "text", " Replay: 0 differences, 0 bad lines", 20000);
        mouseClick(find("drawerTabs").itemAt(3));
        const numbers = /^[1-9]\d* inputs given, [1-9]\d* outputs compared/;
        verify(numbers.test(find("differencesSummary").text), find("differencesSummary").text);
    }
}
