import QtQuick
import Client.Common
import Integration

/// Tests the dialogs by keys and checks the bookmarks that the stations store.
WindowTest {
    name: "Dialogs"

    readonly property var harbour: workbench.stations[0]
    readonly property double noon: Date.parse("2026-03-01T11:00:00Z")

    function dialogs() { return find("dialogs"); }
    function records(station) { return lab.stored((station ?? harbour).relayPath); }
    function added() { return records().filter(record => record.StartTimestamp === noon); }
    function shown() {
        tryVerify(() => bookmarkCount() === 360);
        return plugin.getBookmarkListByNodeID("");
    }

    function opened(name) {
        const dialog = find(name);
        tryCompare(dialog, "opened", true);
        return dialog;
    }
    function part(dialog, name) {
        return findChild(dialog.contentItem, name) || findChild(dialog.footer, name);
    }
    function retype(field, text) {
        mouseClick(field);
        keyClick(Qt.Key_A, Qt.ControlModifier);
        type(text);
    }

    /// One station fails: the next try adds only on its cameras.
    function test_addOnCamerasOfManyStations() {
        const hall = workbench.stations[2];
        dialogs().addFor([harbour.cameras[0]], noon, noon + 60000);
        const dialog = opened("addDialog");
        retype(part(dialog, "cameraSearch"), "station hall");
        mouseClick(part(dialog, "checkShown"));
        workbench.failStation(hall.relayPath, true);
        for (const problem of ["Not added on 4 of 5 cameras: Station hall - Main entrance, ",
                               "Not added on 4 of 4 cameras: Station hall - Main entrance, "]) {
            keyClick(Qt.Key_Return);
            tryVerify(() => part(dialog, "dialogProblem").text.startsWith(problem), 5000, problem);
        }
        workbench.failStation(hall.relayPath, false);
        keyClick(Qt.Key_Return);
        tryCompare(dialog, "visible", false);
        compare([records().length, records(hall).length], [120 + 1, 120 + 4]);
    }

    function test_clickOutsideKeepsTheDialogOpen() {
        dialogs().addFor([workbench.stations[2].cameras[3]], noon, noon + 60000);
        const dialog = opened("addDialog");
        type("Half written");
        mouseClick(dialog.parent, 5, 5);
        compare([dialog.opened, part(dialog, "addDescription").text], [true, "Half written"]);
    }

    function test_addWithoutACameraShowsAnErrorAfterTheFirstTry() {
        dialogs().addFor([], noon, noon + 60000);
        const dialog = opened("addDialog");
        const hint = part(dialog, "chosenCameras");
        compare([hint.text, hint.color], ["Choose a camera", Theme.faintText]);
        keyClick(Qt.Key_Return);
        compare(hint.color, Theme.failure);
        verify(!dialog.busy);
    }

    function test_fieldsKeepTheirWidthBesideAnError() {
        dialogs().addFor([harbour.cameras[0]], noon, noon + 60000);
        const dialog = opened("addDialog");
        const fields = ["addStartInput", "addEndInput"].map(name => part(dialog, name));
        const width = fields[0].width;
        compare(part(dialog, "addLength").text, "Length: 1 min");
        retype(fields[1], "2026-10-25 02:30");
        compare(part(dialog, "addEndProblem").text, "02:30 occurs twice; the one in summer time is used.");
        updateLayout();
        compare(fields.map(field => field.width), [width, width]);
    }

    function test_addNeedsValidTimes() {
        dialogs().addFor([harbour.cameras[1]], noon, noon + 60000); // 12:00 in Berlin
        const dialog = opened("addDialog");
        type("Crane stuck");
        for (const [text, problem] of [["2026-03-01 11:59", "before the start"],
                                       ["noon", "not a time"], ["2026-03-01 12:30", ""]]) {
            retype(part(dialog, "addEndInput"), text);
            verify(part(dialog, "addEndProblem").text.includes(problem), text);
            keyClick(Qt.Key_Return);
            tryCompare(workbench, "outstanding", 0);
            compare(added().length, problem ? 0 : 1);
        }
        const record = added()[0];
        compare([record.CameraID, record.Description, record.EndTimestamp - noon, record.Creator],
                [harbour.cameras[1].cameraID, "Crane stuck", 30 * 60000, "operator"]);
    }

    /// Signals do not name their request, so a dialog that was closed with Esc and opened again must
    /// wait for the earlier answer.
    function test_requestWaitsForTheAnswerToTheLastOne() {
        const depot = workbench.stations[1];
        workbench.faults.setData(workbench.faults.index(2, 0), "1500", FaultsModel.DelayRole);
        for (const station of [harbour, depot]) {
            dialogs().addFor([station.cameras[0]], noon, noon + 60000);
            const dialog = opened("addDialog");
            type(station.name);
            keyClick(Qt.Key_Return);
            compare(dialog.busy, station === harbour);
            tryVerify(() => part(dialog, "dialogWaiting").text.includes(
                          station === harbour ? station.name : "last request"));
            if (station === harbour)
                keyClick(Qt.Key_Escape);
        }
        tryCompare(find("addDialog"), "ready", true);
        verify(find("addDialog").visible, "the answer was not for this request");
        keyClick(Qt.Key_Return);
        tryCompare(find("addDialog"), "visible", false);
        for (const station of [harbour, depot])
            verify(records(station).some(record => record.Description === station.name));
    }

    function test_dialogStopsWaitingAfterTheTimeout() {
        workbench.faults.setData(workbench.faults.index(2, 0), "300", FaultsModel.DelayRole);
        dialogs().addFor([harbour.cameras[0]], noon, noon + 60000);
        const dialog = opened("addDialog");
        dialog.timeoutSeconds = 0;
        keyClick(Qt.Key_Return);
        tryVerify(() => part(dialog, "dialogProblem").text.startsWith("No answer has come"));
        verify(dialog.ready);
        tryCompare(workbench, "outstanding", 0);
        verify(dialog.visible, "the late answer changes nothing");
    }

    function test_severalChangesShowOneNotice() {
        const told = [];
        dialogs().app.notice.connect(text => told.push(text));
        for (const [name, key, text] of [["editDialog", "edit", "7 bookmarks changed."],
                                         ["deleteDialog", "remove", "7 bookmarks deleted."]]) {
            dialogs()[key](shown().filter(record => record.relayPath === harbour.relayPath).slice(0, 7));
            opened(name);
            type("x");
            keyClick(Qt.Key_Return);
            tryVerify(() => told.length > 0);
            tryCompare(workbench, "outstanding", 0);
            compare(told.splice(0), [text]);
        }
    }

    function test_everyGroupIsSuggested() {
        lab.fill(1600, "a");
        lab.fill(1, "rare");
        lab.fill(1600, "z");
        keyClick(Qt.Key_F5);
        tryVerify(() => bookmarkCount() === 360 + 3201);
        keyClick(Qt.Key_N, Qt.ControlModifier);
        compare(part(opened("addDialog"), "addGroup").model, ["a", "night", "rare", "z"]);
    }

    function test_editKeepsUnchangedValues() {
        for (const [field, text, count] of [["editDescription", "seen", 3], ["editGroup", "seen", 3],
                                            ["editDescription", "", 1]]) {
            const chosen = records().slice(0, count);
            dialogs().edit(shown().filter(
                record => chosen.some(one => one.BookmarkID === record.bookmarkID)));
            const dialog = opened("editDialog");
            retype(part(dialog, field), text || "x");
            if (text === "")
                keyClick(Qt.Key_Backspace);
            keyClick(Qt.Key_Return);
            tryCompare(dialog, "visible", false);
            for (const before of chosen) {
                before[field === "editGroup" ? "Group" : "Description"] = text;
                compare(records().find(record => record.BookmarkID === before.BookmarkID), before);
            }
        }
    }

    function test_failedDeletionsStayInTheDialog() {
        const [first, second] = workbench.stations;
        dialogs().remove([first, first, second, second].map(
            (at, i) => shown().filter(record => record.relayPath === at.relayPath)[i]));
        const dialog = opened("deleteDialog");
        workbench.failStation(harbour.relayPath, true);
        keyClick(Qt.Key_Return);
        tryVerify(() => part(dialog, "dialogProblem").text.startsWith("2 of 4"));
        compare([records().length, records(second).length], [120, 118]);
    }

    function test_removeAllNeedsTheTypedName() {
        dialogs().removeAllOf(harbour);
        opened("removeAllDialog");
        type("Harbou");
        keyClick(Qt.Key_Return);
        verify(!find("removeAllDialog").busy);
        type("r");
        keyClick(Qt.Key_Return);
        tryVerify(() => records().length === 0);
    }

    function test_recycleSettingIsStored() {
        for (const round of [1, 2]) {
            dialogs().recycle();
            const dialog = opened("recycleDialog");
            tryCompare(dialog, "known", true);
            verify(round === 1 || dialog.total === 9999 * 24);
            part(dialog, "recycleDays").value = 9999;
            keyClick(Qt.Key_Return);
            tryCompare(dialog, "visible", false);
        }
    }

    function test_recentBookmarkIsShownInACell() {
        dialogs().recentOf(harbour);
        const dialog = opened("recentDialog");
        tryVerify(() => dialog.records.length === 20);
        let wanted = null;
        dialog.app.bookmarkWanted.connect(record => wanted = record);
        keyClick(Qt.Key_Down);
        keyClick(Qt.Key_Return);
        compare(wanted.bookmarkID, dialog.records[1].bookmarkID);
    }
}
