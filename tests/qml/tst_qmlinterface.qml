import QtQml
import QtQml.Models
import QtTest

// Tests the conversions between QML and the plug-in: overloads, default arguments, value types, names
// of signal arguments, models.
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

    // Returns the expected result for this version of Qt.
    function sinceQt65(before, after) {
        return qtMinor < 5 ? before : after;
    }

    // In Qt 6.4 an empty literal arrives as a null text, like undefined and null. An empty text that
    // is computed or typed arrives as an empty one.
    readonly property string computedEmpty: " ".trim()

    function test_omittedTextsAreLeftOut_data() {
        return [
            { args: [], payload: {} },
            { args: ["text"], payload: { Description: "text" } },
            { args: ["text", "group"], payload: { Description: "text", Group: "group" } },
            { args: [computedEmpty, computedEmpty], payload: { Description: "", Group: "" } },
            { args: [undefined, null], payload: {} },
            { args: ["", ""], payload: sinceQt65({}, { Description: "", Group: "" }) }
        ].map(row => Object.assign(row, { tag: JSON.stringify(row.args) }));
    }

    function test_omittedTextsAreLeftOut(row) {
        verify(bookmarks.updateBookmark("b1", ...row.args));
        const sent = onlySent();
        compare(sent.command, "UpdateBookmark");
        compare(sent.payload, Object.assign({ BookmarkID: "b1" }, row.payload));
    }

    function test_typeOfTimesSelectsTheOverload_data() {
        const start = new Date(2026, 0, 31, 23, 59, 58).getTime();
        return [
            { tag: "numbers", from: start, to: start + 2000, start: start },
            { tag: "texts", from: "2026/01/31 23:59:58", to: "2026/02/01 00:00:00", start: start }
        ];
    }

    function test_typeOfTimesSelectsTheOverload(row) {
        const times = { StartTimestamp: row.start, EndTimestamp: row.start + 2000 };
        verify(bookmarks.addBookmarks([{ CameraID: "1", LocationID: "l", relayPath: "A" }],
                                      row.from, row.to, "desc", "me", "group"));
        compare(onlySent().payload, [Object.assign({
            CameraID: "1", LocationID: "l", Description: "desc", Creator: "me", Group: "group"
        }, times)]);
        bookmarks.queryBookmarkForAPI(["A/1", 7, { id: "x" }], row.from, row.to);
        compare(onlySent().payload,
                Object.assign({ CameraIDList: ["A/1", 7, { id: "x" }] }, times));
        for (const key in times)
            compare(host.typeInPayload(0, key), "qlonglong");
    }

    // The engine converts or rejects other values, depending on the version of Qt.
    function test_invalidTimesAreConvertedOrRejected_data() {
        const least = -9223372036854775808;
        const noon = new Date(2026, 0, 31, 12);
        return [
            { tag: "undefined", time: undefined, added: sinceQt65("rejected", 0) },
            { tag: "null", time: null, added: sinceQt65("rejected", 0) },
            { tag: "an object", time: {}, added: sinceQt65("rejected", 0) },
            { tag: "Date", time: noon, added: sinceQt65("rejected", noon.getTime()) },
            { tag: "NaN", time: NaN, added: sinceQt65(least, 0), queried: sinceQt65([least], []) },
            { tag: "1.9", time: 1.9, added: sinceQt65(2, 1), queried: sinceQt65([2], [1]) },
            { tag: "-1.9", time: -1.9, added: sinceQt65(-2, -1), queried: sinceQt65([-2], [-1]) },
            { tag: "a number as text", time: "5", added: 5, queried: [] },
            { tag: "a clock's gap", time: "2026/03/29 02:30:00", added: 0,
              queried: sinceQt65([], [1774747800000]) },
            { tag: "a clock's overlap", time: "2026/10/25 02:30:00", added: 0,
              queried: [1792888200000] }
        ];
    }

    function test_invalidTimesAreConvertedOrRejected(row) {
        const starts = call => {
            try {
                call();
            } catch (error) {
                return "rejected";
            }
            return host.takeSent().map(sent => sent.payload.StartTimestamp);
        };
        const added = starts(() => bookmarks.addBookmark("1", "l", "A", row.time, 2, "", "", ""));
        compare(added, row.added === "rejected" ? "rejected" : [row.added]);
        const end = typeof row.time === "string" ? "2026/12/31 00:00:00" : 9;
        const queried = starts(() => bookmarks.queryBookmarkForAPI(["A/1"], row.time, end));
        compare(queried, row.queried ?? sinceQt65("rejected", []));
    }

    function test_numbersKeepTheirTypes() {
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
            { tag: "addBookmarkResponsed", names: ["success"], values: [true] },
            { tag: "addBookmarksResponsed", names: ["failCamNameList"], values: [["Camera A1"]] },
            { tag: "queryAllBookmarksResponsed", names: ["done"], values: [false] },
            { tag: "getRecycleSettingResponse", names: ["reserveHour", "enableRecycle"],
              values: [72, true] }
        ];
    }

    function test_signalArgumentsHaveNames(row) {
        const handler = "on" + row.tag.charAt(0).toUpperCase() + row.tag.slice(1);
        ignoreWarning(/Implicitly defined onFoo properties in Connections are deprecated/);
        ignoreWarning(/Injection of parameters into signal handlers is deprecated/);
        const watcher = Qt.createQmlObject(
            "import QtQml; Connections { target: bookmarks; property var seen; "
            + handler + ": seen = [" + row.names + "] }", testCase);
        bookmarks[row.tag](...row.values);
        compare(watcher.seen, row.values);
        watcher.destroy();
    }

    function test_pageConsistsOfPlainObjects() {
        verify(bookmarks.queryAllBookmarks());
        const record = { BookmarkID: "b1", CameraID: "1", StartTimestamp: 1000, EndTimestamp: 2000,
                         Description: "First" };
        host.takeSent().forEach((sent, index) => {
            host.answer(index, { Bookmarks: sent.relayPath === "A" ? [record, {}] : [] });
        });
        const page = bookmarks.getFilteredBookmarkList({
            text: "FIRST", startTimestamp: 0, endTimestamp: 5000, groupKey: "bookmarkID"
        });
        compare(page.totalBookmarkNumber, 1);
        const [{ title, bookmarkList: [shown] }] = page.bookmarkGroupList;
        compare([title, shown.cameraName, shown.startTimestamp],
                ["b1", "Station A - Camera A1", 1000]);
    }

    Component {
        id: timeline

        Instantiator {
            QtObject { required property string descRole }
        }
    }

    function test_modelSurvivesTheGarbageCollector() {
        bookmarks.setTimelineFocusInfo("l", "A", "cell");
        const bar = timeline.createObject(testCase, {
            model: bookmarks.getBookmarkModelForTimeline("cell")
        });
        bookmarks.setTimelineBoundary(0, 1000, "cell");
        host.takeSent();
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
