import QtQuick
import QtQuick.Controls
import QtTest
import Integration

/// Recordings in the integrators' drawer: opened in place of the live traffic.
WindowTest {
    id: test

    name: "Recordings"

    function list() { return find("trafficList"); }
    function row(index) {
        list().positionViewAtIndex(index, ListView.Contain);
        tryVerify(() => list().itemAtIndex(index), 5000, "row " + index);
        return list().itemAtIndex(index);
    }
    function add(description) {
        plugin.addBookmark("camera-11", "location-1", "relay-1", 1000, 2000, description, "me", "");
        tryCompare(workbench, "outstanding", 0);
    }
    /// Types into the dialog that a button opens, and accepts.
    function enter(button, dialogName, path) {
        mouseClick(find(button));
        const dialog = find(dialogName);
        tryCompare(dialog, "opened", true);
        findChild(dialog.contentItem, "savePath").text = path;
        keyClick(Qt.Key_Return);
        return dialog;
    }
    function openDrawer() {
        keyClick(Qt.Key_F12);
        updateLayout();
    }
    function filter(text) {
        mouseClick(find("trafficSearch"));
        keyClick(Qt.Key_A, Qt.ControlModifier);
        type(text);
        keyClick(Qt.Key_Return);
    }

    function test_openedRecordingIsReadAndClosed() {
        workbench.traffic.clear();
        add("from the file");
        compare(workbench.recorder.save(lab.sessionFile()), "");
        add("live");
        openDrawer();
        tryVerify(() => list().count >= 8);
        verify(!find("recordingBar").visible);

        const dialog = enter("openRecording", "openDialog", "/none/s.jsonl");
        compare([dialog.opened, dialog.error.startsWith("/none/s.jsonl: ")], [true, true]);
        keyClick(Qt.Key_Escape);
        tryCompare(dialog, "visible", false);
        verify(list().count >= 8, "still the live traffic");

        enter("openRecording", "openDialog", lab.sessionFile());
        tryCompare(dialog, "visible", false);
        updateLayout();
        verify(find("recordingBar").visible && !find("pauseTraffic").visible);
        verify(find("openedTitle").text.startsWith("session.jsonl: "), find("openedTitle").text);
        compare(find("openedState").text.trim(), "");
        filter("kind:send name:addbookmark");
        tryCompare(list(), "count", 1);
        mouseClick(row(0));
        compare(row(0).progress.endsWith(" ms"), true, "answered in the file");
        tryVerify(() => texts(find("payloadTree")).includes("\"from the file\""));

        mouseClick(find("closeRecording"));
        tryCompare(find("recordingBar"), "visible", false);
        tryCompare(list(), "count", 2);
        tryCompare(find("payloadTree"), "rows", 0);
    }

    function test_differencesAreMarkedAndFolded() {
        add("first");
        add("second");
        compare(workbench.recorder.save(lab.sessionFile()), "");
        openDrawer();
        enter("openRecording", "openDialog", lab.sessionFile());
        tryCompare(find("openDialog"), "visible", false);
        updateLayout();
        const other = lab.changedSession("\"second\"", "\"another\"");
        enter("compareRecording", "compareDialog", other);
        tryCompare(find("compareDialog"), "visible", false);
        tryVerify(() => list().currentItem && list().currentItem.difference !== "");
        const call = list().currentIndex;
        compare(list().currentItem.name, "addBookmark");
        const [mark, next] = [call, call + 1].map(i => findChild(row(i), "differenceMark"));
        verify(mark.visible && next.visible && !Qt.colorEqual(mark.color, next.color));
        verify(!findChild(row(call - 1), "differenceMark").visible);
        verify(find("difference").text.startsWith("expected arguments[5] is \"second\", found \"another\""),
               find("difference").text);
        verify(/^ changed.jsonl: \d+ differences? \(2 more that follow\)/.test(find("openedState").text), find("openedState").text);

        mouseClick(find("showDifferences"));
        const differences = find("differencesList");
        tryVerify(() => differences.itemAtIndex(0));
        const folded = differences.count;
        updateLayout();
        mouseClick(findChild(differences.itemAtIndex(0), "unfold"));
        tryCompare(differences, "count", folded + 2);
        updateLayout();
        mouseClick(differences.itemAtIndex(1), 60, 5);
        tryCompare(list(), "visible", true);
        compare([list().currentIndex, list().currentItem.kind], [call + 1, "send"]);
    }
}
