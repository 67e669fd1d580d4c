import QtQuick

/// The bookmark panel, used with mouse and keys. 360 bookmarks: 30 on each of 12 cameras.
WindowTest {
    name: "Panel"

    function panel() { return find("bookmarkPanel"); }
    function page() { return find("pageText").text; }
    function row(index) { return find("row-" + index); }
    function record(index) { return find("bookmarkList").page.recordAt(index); }
    function showsPage(text) { tryVerify(() => page() === text, 3000, text); }
    function stored() {
        return bench.stations.reduce((sum, at) => sum + lab.stored(at.relayPath).length, 0);
    }
    function searchFor(text) {
        keyClick(Qt.Key_F, Qt.ControlModifier);
        type(text);
    }

    function test_searchAsOneTypes() {
        searchFor("white v");
        showsPage("1 to 50 of 120");
        keyClick(Qt.Key_Escape);
        showsPage("1 to 50 of 360");
    }

    function test_anAnswerIsAskedForOnceAFrame() {
        let turns = 0;
        find("bookmarkList").page.dataChanged.connect(() => ++turns);
        for (let i = 0; i < 40; ++i)
            panel().filter.text = i % 2 ? "gate" : "";
        showsPage("1 to 50 of 140");
        verify(turns <= 2, turns + " pages for 40 letters");
    }

    function test_pages() {
        for (const [button, text] of [["lastPage", "351 to 360"], ["previousPage", "301 to 350"],
                                      ["firstPage", "1 to 50"], ["nextPage", "51 to 100"]]) {
            mouseClick(find(button));
            showsPage(text + " of 360");
        }
        keyClick(Qt.Key_End, Qt.ControlModifier);
        showsPage("351 to 360 of 360");
    }

    function test_groupsAndOrder() {
        for (const [field, first, last] of [
                 ["cameraName", "Depot - Fence east", "Station hall - Ticket office"],
                 ["creator", "guard", "operator"], ["group", "", "night"]]) {
            find("groupBox").forceActiveFocus();
            keyClick(Qt.Key_Down);
            tryVerify(() => record(0)[field] === last, 3000, field);
            mouseClick(find("orderButton"));
            tryVerify(() => record(0)[field] === first);
            panel().filter.ascending = false;
        }
    }

    function test_cameraOfTheTreeAndItsChip() {
        panel().client.currentCamera = bench.stations[0].cameras[0];
        showsPage("1 to 30 of 30");
        mouseClick(find("cameraChip"));
        showsPage("1 to 50 of 360");
    }

    function test_selectionOverPagesIsDeleted() {
        mouseClick(row(0));
        mouseClick(row(2), 50, 10, Qt.LeftButton, Qt.ControlModifier);
        mouseClick(find("nextPage"));
        showsPage("51 to 100 of 360");
        mouseClick(row(3), 50, 10, Qt.LeftButton, Qt.ControlModifier);
        compare(find("selectedCount").text, "3 selected");
        searchFor("nothing like it");
        mouseClick(find("deleteSelected"));
        tryVerify(() => find("deleteDialog").opened);
        keyClick(Qt.Key_Return);
        tryVerify(() => stored() === 357);
        tryVerify(() => !find("selectedCount").visible);
    }

    function test_refreshKeepsPlace() {
        keyClick(Qt.Key_PageDown, Qt.ControlModifier);
        showsPage("51 to 100 of 360");
        const list = find("bookmarkList");
        list.contentY = 200;
        const before = JSON.stringify(record(5));
        keyClick(Qt.Key_F5);
        wait(200);
        compare([page(), list.contentY, JSON.stringify(record(5))],
                ["51 to 100 of 360", 200, before]);
    }

    function test_emptyResultSaysWhy() {
        const says = (reason, clearable) => {
            tryVerify(() => find("emptyReason").visible
                      && find("emptyReason").text.startsWith(reason), 3000, reason);
            compare(find("clearFilters").visible, clearable);
        };
        searchFor("zzz");
        says("No bookmark matches.", true);
        bench.stations.forEach(station => plugin.removeAllBookmarks(station.relayPath));
        says("There are no bookmarks yet.", false);
        bench.failStation(bench.stations[1].relayPath, true);
        keyClick(Qt.Key_F5);
        says("No bookmarks: Depot failed", false);
    }

    function test_withoutPermissionNothingIsDeleted() {
        lab.setSettingPermission(false);
        bench.connectToServer();
        tryCompare(bench, "settingPermission", false);
        mouseClick(row(0));
        keyClick(Qt.Key_Delete);
        const dialog = find("deleteDialog");
        tryVerify(() => dialog.opened);
        verify(findChild(dialog.footer, "dialogProblem").text.includes("not allow"));
        keyClick(Qt.Key_Return);
        verify(dialog.opened && !dialog.busy);
    }
}
