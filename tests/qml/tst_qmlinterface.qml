import QtQml
import QtQml.Models
import QtTest

// What QML code meets when it talks to the plug-in: overloads, default arguments, value types,
// names of signal arguments, models.
TestCase {
    id: testCase
    name: "QmlInterface"

    function init() {
        host.takeSent();
    }

    function onlySent() {
        const sent = host.takeSent();
        compare(sent.length, 1);
        return sent[0];
    }

    // An empty literal is a null text for the JavaScript engine of Qt 6.4, as undefined and null
    // are; an empty text that was made at run time, or typed by the user, is an empty one.
    readonly property string madeEmpty: " ".trim()

    function test_omittedTextsAreLeftOut_data() {
        return [
            { tag: "both omitted", args: ["b1"], payload: { BookmarkID: "b1" } },
            { tag: "group omitted", args: ["b1", "text"],
              payload: { BookmarkID: "b1", Description: "text" } },
            { tag: "both given", args: ["b1", "text", "group"],
              payload: { BookmarkID: "b1", Description: "text", Group: "group" } },
            { tag: "emptied, no group", args: ["b1", madeEmpty],
              payload: { BookmarkID: "b1", Description: "" } },
            { tag: "both emptied", args: ["b1", madeEmpty, madeEmpty],
              payload: { BookmarkID: "b1", Description: "", Group: "" } },
            { tag: "undefined and null", args: ["b1", undefined, null],
              payload: { BookmarkID: "b1" } },
            { tag: "empty literals", args: ["b1", "", ""], payload: { BookmarkID: "b1" } }
        ];
    }

    function test_omittedTextsAreLeftOut(row) {
        verify(bookmarks.updateBookmark(...row.args));
        const sent = onlySent();
        compare(sent.command, "UpdateBookmark");
        compare(sent.relayPath, "");
        compare(sent.payload, row.payload);
    }

    function test_typesOfTimesChooseTheOverload_data() {
        const start = new Date(2026, 0, 31, 23, 59, 58).getTime();
        return [
            { tag: "numbers", from: start, to: start + 2000, start: start, end: start + 2000 },
            { tag: "texts", from: "2026/01/31 23:59:58", to: "2026/02/01 00:00:00",
              start: start, end: start + 2000 }
        ];
    }

    function test_typesOfTimesChooseTheOverload(row) {
        verify(bookmarks.addBookmarks([{ CameraID: "1", LocationID: "l", relayPath: "A" }],
                                      row.from, row.to, "desc", "me", "group"));
        const batch = onlySent();
        compare(batch.command, "AddBookmarks");
        compare(batch.relayPath, "A");
        compare(batch.payload, [{ CameraID: "1", LocationID: "l", StartTimestamp: row.start,
                                  EndTimestamp: row.end, Description: "desc", Creator: "me",
                                  Group: "group" }]);

        bookmarks.queryBookmarkForAPI(["A/1", 7, { id: "x" }], row.from, row.to);
        const query = onlySent();
        compare(query.command, "QueryBookmarkForApi");
        compare(query.payload, { CameraIDList: ["A/1", 7, { id: "x" }], StartTimestamp: row.start,
                                 EndTimestamp: row.end });
        for (const key of ["StartTimestamp", "EndTimestamp"])
            compare(host.typeInPayload(0, key), "qlonglong");
    }

    function test_numbersKeepTheirWidth() {
        verify(bookmarks.queryBookmarkForRecent("location", "A", 255));
        compare(onlySent().payload, { LocationID: "location", RecentCnt: 255 });
        compare(host.typeInPayload(0, "RecentCnt"), "int");

        bookmarks.updateRecycleSetting(4294967295, true);
        compare(onlySent().payload, { reserveHour: 4294967295, enableRecycle: true });
        compare(host.typeInPayload(0, "reserveHour"), "uint");
    }

    // An injected name is only there when the signal declares it.
    function test_signalArgumentsHaveNames_data() {
        return [
            { tag: "one bookmark", signal: "addBookmarkResponsed", name: "success", value: true },
            { tag: "cameras", signal: "addBookmarksResponsed", name: "failCamNameList",
              value: ["Camera A1"] },
            { tag: "bookmarks", signal: "deleteBookmarksResponsed", name: "failBookmarkIdList",
              value: ["b1", "b2"] },
            { tag: "parts of a query", signal: "queryAllBookmarksResponsed", name: "done",
              value: false },
            { tag: "hours", signal: "getRecycleSettingResponse", name: "reserveHour", value: 72 },
            { tag: "switch", signal: "getRecycleSettingResponse", name: "enableRecycle",
              value: true }
        ];
    }

    function test_signalArgumentsHaveNames(row) {
        const handler = row.signal.charAt(0).toUpperCase() + row.signal.slice(1);
        ignoreWarning(/Implicitly defined onFoo properties in Connections are deprecated/);
        ignoreWarning(/Injection of parameters into signal handlers is deprecated/);
        const watcher = Qt.createQmlObject(
            "import QtQml; Connections { target: bookmarks; property var seen;"
            + " on" + handler + ": seen = " + row.name + " }", testCase);
        const values = row.signal === "getRecycleSettingResponse" ? [72, true] : [row.value];
        bookmarks[row.signal](...values);
        compare(watcher.seen, row.value);
        watcher.destroy();
    }

    function test_plainMethodsAreNotOffered_data() {
        return [
            { tag: "hasSettingPermission" },
            { tag: "setBookmarkNumberPerPage" },
            { tag: "getBookmarkList" },
            { tag: "queryBookmarkForTimeline" },
            { tag: "CommandProcessor" }
        ];
    }

    function test_plainMethodsAreNotOffered(row) {
        compare(typeof bookmarks[row.tag], "undefined");
    }

    function storeBookmarks(records) {
        verify(bookmarks.queryAllBookmarks());
        host.takeSent().forEach((sent, index) => {
            host.answer(index, { Bookmarks: sent.relayPath === "A" ? records : [] });
        });
    }

    function test_aPageIsPlainObjects() {
        storeBookmarks([
            { BookmarkID: "b1", CameraID: "1", LocationID: "l", StartTimestamp: 1000,
              EndTimestamp: 2000, Description: "First", Creator: "me", Group: "g" },
            { BookmarkID: "b2", CameraID: "1", LocationID: "l", StartTimestamp: 3000,
              EndTimestamp: 4000, Description: "Second", Creator: "me", Group: "g" }
        ]);
        const page = bookmarks.getFilteredBookmarkList({
            text: "FIRST", startTimestamp: 0, endTimestamp: 5000, groupKey: "group",
            ascending: true, pageNumber: 0
        });
        compare(page.totalBookmarkNumber, 1);
        compare(page.bookmarkGroupList.length, 1);
        compare(page.bookmarkGroupList[0].title, "g");
        const record = page.bookmarkGroupList[0].bookmarkList[0];
        compare(record.bookmarkID, "b1");
        compare(record.cameraName, "Station A - Camera A1");
        compare(record.startTimestamp, 1000);
        compare(record.locID, "l");
    }

    Component {
        id: timeline

        Instantiator {
            QtObject {
                required property string bookmarkIDRole
                required property string descRole
            }
        }
    }

    function test_aModelSurvivesTheGarbageCollector() {
        bookmarks.setTimelineFocusInfo("l", "A", "cell");
        const bar = timeline.createObject(testCase, {
            model: bookmarks.getBookmarkModelForTimeline("cell")
        });
        bookmarks.setTimelineBoundary(0, 1000, "cell");
        compare(onlySent().payload, { LocationID: "l", StartTimestamp: 0, EndTimestamp: 1000 });
        gc();
        host.answer(0, { Bookmarks: [{ BookmarkID: "b1", LocationID: "l", Description: "Seen" }] });
        compare(bar.count, 1);
        compare(bar.objectAt(0).descRole, "Seen");
        bar.destroy();

        gc();
        wait(0);
        compare(bookmarks.getBookmarkModelForTimeline("cell").rowCount(), 1);
        bookmarks.removeTimelineModel("cell");
    }
}
