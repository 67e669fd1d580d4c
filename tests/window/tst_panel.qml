import QtQuick
import Client.Common
import Integration

/// Tests the bookmark panel by mouse and keys, with 360 bookmarks: 30 on each of 12 cameras.
WindowTest {
    name: "Panel"

    function panel() { return find("bookmarkPanel"); }
    function page() { return find("pageText").text; }
    function row(index) { return find("row-" + index); }
    function record(index) { return find("bookmarkList").page.recordAt(index); }
    function showsPage(text) { tryVerify(() => page() === text, 3000, text); }
    function stored() {
        return workbench.stations.reduce((sum, at) => sum + lab.stored(at.relayPath).length, 0);
    }
    function searchFor(text) {
        keyClick(Qt.Key_F, Qt.ControlModifier);
        type(text);
    }

    function test_searchFollowsTyping() {
        searchFor("white v");
        showsPage("1 to 50 of 120");
        keyClick(Qt.Key_Escape);
        showsPage("1 to 50 of 360");
    }

    function test_pageIsReadOncePerFrame() {
        let turns = 0;
        find("bookmarkList").page.dataChanged.connect(() => ++turns);
        for (let i = 0; i < 40; ++i)
            panel().filter.text = i % 2 ? "gate" : "";
        showsPage("1 to 50 of 140");
        verify(turns <= 2, turns + " pages for 40 letters");
    }

    function withoutIDs() {
        return workbench.stations.map(at => lab.stored(at.relayPath).map(
            one => JSON.stringify(Object.assign(one, { BookmarkID: "" }))).sort());
    }

    function test_exportedBookmarksCanBeImported() {
        const dialog = find("exportDialog");
        const path = findChild(dialog.contentItem, "savePath");
        const group = "a \"quoted\", group\nof two lines";
        lab.fill(3, group);
        keyClick(Qt.Key_F5);
        for (const [text, count] of [["gate", 143], ["", 363]]) {
            panel().filter.text = text;
            tryCompare(panel().query, "total", count);
            mouseClick(find("exportButton"));
            tryCompare(dialog, "opened", true);
            path.text = lab.exportFile();
            keyClick(Qt.Key_Return);
            tryCompare(dialog, "visible", false);
            const before = withoutIDs();
            compare(lab.importAnew(lab.exportFile()), count + " imported");
            compare(JSON.stringify(withoutIDs()) === JSON.stringify(before), text === "");
            lab.reset();
            lab.fill(3, group);
        }
    }

    function test_addedBookmarkIsFramed() {
        const framed = () => Array.from({ length: 50 }, (_, i) => find("row-" + i))
            .filter(one => one && one.parent.framed).map(one => one.parent.record.description);
        const list = find("bookmarkList");
        list.positionViewAtEnd();
        keyClick(Qt.Key_N, Qt.ControlModifier);
        tryVerify(() => find("addDialog").opened);
        type("Crane stuck");
        keyClick(Qt.Key_Return);
        tryVerify(() => framed().join() === "Crane stuck");
        compare(list.contentY, list.originY, "it can be seen");
    }

    function test_pageButtonsTurnPages() {
        for (const [button, text] of [["lastPage", "351 to 360"], ["previousPage", "301 to 350"],
                                      ["firstPage", "1 to 50"], ["nextPage", "51 to 100"]]) {
            mouseClick(find(button));
            showsPage(text + " of 360");
        }
        keyClick(Qt.Key_End, Qt.ControlModifier);
        showsPage("351 to 360 of 360");
    }

    function test_groupAndOrderSortThePage() {
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

    function test_cameraOfTheTreeFiltersThePage() {
        panel().app.currentCamera = workbench.stations[0].cameras[0];
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
        mouseClick(find("deleteSelected"));
        const dialog = find("deleteDialog");
        tryVerify(() => dialog.opened);
        keyClick(Qt.Key_Return);
        tryVerify(() => stored() === 357);
        tryVerify(() => !find("selectedCount").visible);
    }

    /// Bookmarks 0 and 1 have different texts, so that a filter can hide one of them.
    function test_actionsSkipHiddenBookmarks_data() {
        return [{ tag: "one of two", text: "white v", records: 1, hint: "Also 1 that the filter hides" },
                { tag: "all", text: "nothing like it", records: 0,
                  hint: "The filter hides all 2; include them" }];
    }
    function test_actionsSkipHiddenBookmarks(data) {
        for (const time of [1, 2])
            lab.fill(1, "hidden");
        keyClick(Qt.Key_F5);
        showsPage("1 to 50 of 362");
        const white = plugin.getBookmarkListByNodeID("").find(one => one.description.startsWith("white"));
        panel().selection.setRecords([record(0), white]);
        searchFor(data.text);
        tryCompare(panel().query, "total", data.records ? 120 : 0);
        for (const [key, name] of [[Qt.Key_F2, "editDialog"], [Qt.Key_Delete, "deleteDialog"]]) {
            find("bookmarkList").forceActiveFocus();
            keyClick(key);
            const dialog = find(name);
            tryVerify(() => dialog.opened);
            compare(dialog.records.length, data.records);
            const box = findChild(dialog.contentItem, "hiddenToo");
            compare([box.visible, box.text], [true, data.hint]);
            box.forceActiveFocus();
            for (const count of [2, data.records]) {
                keyClick(Qt.Key_Space);
                compare(dialog.records.length, count);
            }
            keyClick(Qt.Key_Escape);
            tryCompare(dialog, "visible", false);
        }
    }

    function test_shiftSelectsOverPages() {
        mouseClick(row(2));
        for (const text of ["51 to 100", "101 to 150"]) {
            mouseClick(find("nextPage"));
            showsPage(text + " of 360");
        }
        mouseClick(row(1), 50, 10, Qt.LeftButton, Qt.ShiftModifier);
        compare(find("selectedCount").text, "100 selected");
        const whole = plugin.getFilteredBookmarkList(panel().filter.pageWanted(1)).bookmarkGroupList;
        panel().selection.remove(whole[0].bookmarkList);
        compare(find("selectedCount").text, (100 - whole[0].bookmarkList.length) + " selected");
        keyClick(Qt.Key_Down, Qt.ShiftModifier);
        compare(find("selectedCount").text, "101 selected");
        keyClick(Qt.Key_Home, Qt.ControlModifier); // and back beyond where it began
        showsPage("1 to 50 of 360");
        keyClick(Qt.Key_Home, Qt.ShiftModifier);
        compare(find("selectedCount").text, "3 selected");
        keyClick(Qt.Key_Escape);
        keyClick(Qt.Key_PageDown, Qt.ControlModifier);
        showsPage("51 to 100 of 360");
        keyClick(Qt.Key_Down, Qt.ShiftModifier);
        compare(find("selectedCount").text, "2 selected");
    }

    function test_keysMoveAndSelectInTheList() {
        searchFor("van");
        keyClick(Qt.Key_Down);
        keyClick(Qt.Key_A, Qt.ControlModifier);
        compare(find("selectedCount").text, "50 selected");
        keyClick(Qt.Key_Escape);
        verify(!find("selectedCount").visible);
        keyClick(Qt.Key_End);
        keyClick(Qt.Key_F2);
        tryVerify(() => find("editDialog").opened && find("editDialog").records.length === 1);
        compare(find("editDialog").records[0], record(49));
    }

    function test_bookmarkIsShownInACell() {
        const wanted = record(4);
        mouseClick(row(4));
        keyClick(Qt.Key_Return);
        const cell = find("cellGrid").activeCell;
        compare(cell.camera.cameraID, wanted.cameraID);
        fuzzyCompare(cell.head.position, wanted.startTimestamp, 5000); // it plays on
        verify(cell.range.from <= cell.head.position && cell.head.position <= cell.range.to);
    }

    /// Checks that the page shows the bookmarks of a range.
    function showsRange({ startTimestamp, endTimestamp }) {
        const count = plugin.getBookmarkListByNodeID("").filter(
            one => one.startTimestamp >= startTimestamp && one.startTimestamp <= endTimestamp).length;
        tryVerify(() => panel().query.total === count, 3000, count + " shown");
    }

    function test_calendarSelectsDays_data() {
        const mouse = days => days.forEach(day => mouseClick(find("day-" + day)));
        const keys = () => [Qt.Key_Left, Qt.Key_Return, Qt.Key_Right, Qt.Key_Return]
            .forEach(key => keyClick(key));
        return [{ tag: "by mouse", choose: mouse }, { tag: "by key", choose: keys }];
    }
    function test_calendarSelectsDays(data) {
        const ranges = panel().filter.ranges;
        const today = ranges.dayOf(Date.now());
        const days = [ranges.dayLater(today, -1), today];
        mouseClick(find("presetDays"));
        tryVerify(() => find("monthGrid").activeFocus);
        data.choose(days);
        compare([panel().filter.firstDay, panel().filter.lastDay], days);
        showsRange(ranges.range(DateRanges.Days, 0, ...days));
        compare(find("presetDays").text, days.map(day => ranges.shortText(day)).join(" to "));
    }

    function test_presetsFilterByDate() {
        const { Today, Yesterday, ThisWeek } = DateRanges;
        for (const [name, preset] of [["Today", Today], ["Yesterday", Yesterday], ["Week", ThisWeek]]) {
            mouseClick(find("preset" + name));
            showsRange(panel().filter.ranges.range(preset, Date.now()));
        }
        find("presetAll").forceActiveFocus();
        keyClick(Qt.Key_Space);
        showsPage("1 to 50 of 360");
    }

    /// Combined with day, text and camera, over several pages, and for selection and export.
    function test_timeOfDayFilters_data() {
        const night = hour => hour >= 22 || hour < 6;
        return [{ tag: "over midnight", box: "22:00 to 06:00", text: "", holds: night },
                { tag: "with a text", box: "22:00-6:00", text: "white v", holds: night },
                { tag: "by day", box: "06:00-22:00", text: "", holds: hour => !night(hour) }];
    }
    function test_timeOfDayFilters(data) {
        const hourOf = one => Number(one.displayTimeRange.slice(0, 2));
        const expected = plugin.getBookmarkListByNodeID("").filter(
            one => one.description.includes(data.text) && data.holds(hourOf(one)));
        panel().filter.text = data.text;
        const box = find("timeOfDay");
        mouseClick(box, 30, 10);
        keyClick(Qt.Key_A, Qt.ControlModifier);
        type("nonsense");
        verify(!box.valid);
        keyClick(Qt.Key_A, Qt.ControlModifier);
        type(data.box);
        keyClick(Qt.Key_Return);
        tryCompare(panel().query, "total", expected.length);
        for (const ascending of [false, true]) {
            panel().filter.ascending = ascending;
            const found = panel().query.found.pages(panel().filter.pageWanted(0), () => false);
            compare(found.map(one => one.bookmarkID).sort(),
                    expected.map(one => one.bookmarkID).sort());
            const days = found.map(one => panel().filter.ranges.dayOf(one.startTimestamp));
            const sorted = days.slice().sort();
            compare(days, ascending ? sorted : sorted.reverse());
        }
        const [shown, hidden] = panel().query.found.shownAndHidden(plugin.getBookmarkListByNodeID(""));
        compare([shown.length, hidden.length], [expected.length, 360 - expected.length]);
        panel().filter.clear();
        showsPage("1 to 50 of 360");
        compare(box.editText, "Any time");
    }

    function test_waitingCanBeCancelled() {
        workbench.faults.setData(workbench.faults.index(2, 0), 3000, FaultsModel.DelayRole);
        keyClick(Qt.Key_F5);
        tryVerify(() => find("stopWaiting").visible);
        compare(find("queryProgress").text, "2 of 3 stations");
        mouseClick(find("stopWaiting"));
        showsPage("1 to 50 of 240");
        compare(find("queryProgress").text, "Failed or not answered: Harbour");
    }

    function test_refreshKeepsThePage() {
        keyClick(Qt.Key_PageDown, Qt.ControlModifier);
        showsPage("51 to 100 of 360");
        const list = find("bookmarkList");
        list.contentY = 200;
        const before = JSON.stringify(record(5));
        keyClick(Qt.Key_F5);
        tryCompare(workbench, "outstanding", 0);
        wait(0);
        compare([page(), list.contentY, JSON.stringify(record(5))],
                ["51 to 100 of 360", 200, before]);
    }

    function test_emptyPageShowsTheReason() {
        const says = (reason, clearable) => {
            tryVerify(() => find("emptyReason").visible
                      && find("emptyReason").text.startsWith(reason), 3000, reason);
            compare(find("clearFilters").visible, clearable);
        };
        searchFor("zzz");
        says("No bookmark matches.", true);
        workbench.stations.forEach(station => plugin.removeAllBookmarks(station.relayPath));
        says("There are no bookmarks yet.", false);
        workbench.failStation(workbench.stations[1].relayPath, true);
        keyClick(Qt.Key_F5);
        says("No bookmarks: Depot failed", false);
    }

    function test_withoutPermissionNothingIsDeleted() {
        lab.setSettingPermission(false);
        workbench.connectToServer();
        tryCompare(workbench, "settingPermission", false);
        mouseClick(row(0));
        keyClick(Qt.Key_Delete);
        const dialog = find("deleteDialog");
        tryVerify(() => dialog.opened);
        verify(findChild(dialog.footer, "dialogProblem").text.includes("not allow"));
        keyClick(Qt.Key_Return);
        verify(dialog.opened && !dialog.busy);
    }
}
