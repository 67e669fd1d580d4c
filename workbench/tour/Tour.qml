import QtQml

// A tour of the plug-in's interface, and an example of how QML uses it. Every step calls what a
// bookmark panel or a timeline bar would call, and waits for the signals that they wait for.
TourRunner {
    id: tour

    readonly property var station: bench.stations[0]
    readonly property var camera: station.cameras[0]
    readonly property var otherStation: bench.stations[1]
    readonly property var failingStation: bench.stations[2]

    // Everything of this tour bears its tag, as the stations may hold bookmarks of earlier days.
    readonly property double now: bench.now
    readonly property string tag: "tour-" + now
    readonly property double minute: 60 * 1000
    readonly property double hour: 60 * minute

    property TimelineRows firstCell: null
    property TimelineRows secondCell: null

    readonly property Component timelineRows: Component {
        TimelineRows {}
    }

    Component.onCompleted: play(steps())

    function* steps() {
        yield* beforeConnecting();
        yield* connecting();
        yield* viewCells();
        yield* addingOne();
        yield* addingMany();
        yield* queryingAll();
        yield* filteredPage();
        yield* queryingForApi();
        yield* queryingRecent();
        yield* otherClient();
        yield* updating();
        yield* deletingOne();
        yield* deletingMany();
        yield* recycleSettings();
        yield* reconnecting();
        leaving();
    }

    function* beforeConnecting() {
        step("Before the connection nothing may be deleted");
        expect(!bookmarks.deleteBookmark("any", station.relayPath), "the request is refused");
        const [success] = yield until("deleteBookmarkResponsed");
        expect(!success, "and the signal says so");
        expect(bench.stationsAsked("DeleteBookmark").length === 0, "no station was asked");
    }

    function* connecting() {
        step("Connect: the plug-in asks for the server's time zone and the user's permission");
        bench.connectToServer();
        yield untilTrue("both answers", () => bench.outstanding === 0);
        expect(bench.stationsAsked("QuerySevTimezone").length === 1, "the time zone was asked for");
        expect(bench.stationsAsked("QuerySettingPermission").length === 1,
               "the permission was asked for");
    }

    function* viewCells() {
        step("Two view cells show the timelines of two stations");
        firstCell = timelineRows.createObject(tour, {
            model: bookmarks.getBookmarkModelForTimeline("cell-1")
        });
        secondCell = timelineRows.createObject(tour, {
            model: bookmarks.getBookmarkModelForTimeline("cell-2")
        });
        bookmarks.setTimelineFocusInfo(station.locationID, station.relayPath, "cell-1");
        bookmarks.setTimelineFocusInfo(otherStation.locationID, otherStation.relayPath, "cell-2");

        // The model asks for what it lacks of the visible range; the plug-in fetches it.
        bookmarks.setTimelineBoundary(now - hour, now + hour, "cell-1");
        bookmarks.setTimelineBoundary(now - hour, now + hour, "cell-2");
        yield until("queryBookmarkForTimelineResponsed");
        yield until("queryBookmarkForTimelineResponsed");
        transcript.printRows("cell-1", firstCell.columns());
        transcript.printRows("cell-2", secondCell.columns());
    }

    function* addingOne() {
        step("Add one bookmark; the view cell of its station shows it");
        const before = firstCell.count;
        expect(bookmarks.addBookmark(camera.cameraID, station.locationID, station.relayPath,
                                     now - 10 * minute, now - 9 * minute,
                                     "Van at the gate, " + tag, "guard", tag),
               "the request is handed on");
        const [success] = yield until("addBookmarkResponsed");
        expect(success, "it was added");
        expect(firstCell.count === before + 1, "cell-1 has one row more");
        transcript.printRows("cell-1", firstCell.columns());
    }

    function* addingMany() {
        step("Add on a camera of each station at once; one station fails");
        const targets = bench.stations.map(({ relayPath, locationID, cameras }) => ({
            CameraID: cameras[1].cameraID,
            LocationID: locationID,
            relayPath: relayPath
        }));
        bench.failStation(failingStation.relayPath, true);
        expect(bookmarks.addBookmarks(targets, now - 5 * minute, now - 4 * minute,
                                      "Alarm, " + tag, "guard", tag),
               "the request is handed on");
        const [failedCameras] = yield until("addBookmarksResponsed");
        bench.failStation(failingStation.relayPath, false);

        expect(bench.stationsAsked("AddBookmarks").length === 3, "one command for each station");
        expect(failedCameras.length === 1 && failedCameras[0] === failingStation.cameras[1].name,
               "the camera of the failing station is named");
    }

    function* queryEverything() {
        expect(bookmarks.queryAllBookmarks(), "the request is handed on");
        let done = false;
        while (!done)
            [done] = yield until("queryAllBookmarksResponsed"); // false: a part has arrived
    }

    function* queryingAll() {
        step("Query all bookmarks of all stations");
        yield* queryEverything();
        expect(bench.stationsAsked("QueryAllBookmars").length === bench.stations.length,
               "every station was asked");
    }

    /// What the panel shows of this tour's bookmarks.
    function page(groupKey) {
        return bookmarks.getFilteredBookmarkList({
            text: tag,
            startTimestamp: now - hour,
            endTimestamp: now + hour,
            groupKey: groupKey,
            ascending: true,
            pageNumber: 0
        });
    }

    /// The records of a page, whatever their group.
    function recordsOf(page) {
        const records = [];
        for (const group of page.bookmarkGroupList)
            records.push(...group.bookmarkList);
        return records;
    }

    function recordWith(text) {
        return recordsOf(page("cameraName")).find(record => record.description.startsWith(text));
    }

    function* filteredPage() {
        step("The panel's page: filtered by text and time, grouped by camera");
        const result = page("cameraName");
        expect(result.totalBookmarkNumber === 3, "three bookmarks match");
        expect(result.bookmarkGroupList.length === 3, "in three groups");
        for (const group of result.bookmarkGroupList) {
            transcript.printRows(group.title, group.bookmarkList.map(record => [
                record.displayDateTime, record.displayTimeRange, record.description
            ]));
        }
    }

    function* queryingForApi() {
        step("Query two cameras between two moments, given as local date-time texts");
        const format = "yyyy/MM/dd hh:mm:ss";
        bookmarks.queryBookmarkForAPI(
            [camera.key, station.cameras[1].key],
            Qt.formatDateTime(new Date(now - hour), format),
            Qt.formatDateTime(new Date(now + hour), format));
        const [success] = yield until("queryBookmarkForApiFinished");
        expect(success, "it was answered");
        const found = bookmarks.getQueryBookmarkResult().filter(record => record.Group === tag);
        expect(found.length === 2, "both of this tour's bookmarks were found");
        transcript.printRows("server records", found.map(record => [
            record.CameraID, String(record.StartTimestamp), record.Description
        ]));
    }

    function* queryingRecent() {
        step("The two most recent bookmarks of a station");
        expect(bookmarks.queryBookmarkForRecent(station.locationID, station.relayPath, 2),
               "the request is handed on");
        const [success] = yield until("queryBookmarkForRecentResponsed");
        expect(success, "it was answered");
        const recent = bookmarks.getBookmarkListForRecent();
        expect(recent.length === 2, "there are two");
        transcript.printRows("recent", recent.map(record => [
            record.displayDateTime, record.cameraName, record.description
        ]));
    }

    function* otherClient() {
        step("Another client adds a bookmark; it shows up without being asked for");
        const before = secondCell.count;
        expect(bench.addByOtherClient(otherStation.relayPath, otherStation.cameras[2].cameraID,
                                      now - 2 * minute, now - minute,
                                      "Seen from elsewhere, " + tag, tag),
               "the other client's bookmark is on its way");
        yield untilTrue("a new row in cell-2", () => secondCell.count === before + 1);
        expect(secondCell.count === before + 1, "cell-2 has one row more");
        expect(bench.stationsAsked("QueryBookmarkForTimeline").length === 0,
               "no timeline query was needed");
        transcript.printRows("cell-2", secondCell.columns());
    }

    function* updating() {
        step("Change a description and leave the group as it is");
        const {bookmarkID, group} = recordWith("Van");
        expect(bookmarks.updateBookmark(bookmarkID, "Van at the gate, gone, " + tag),
               "the request is handed on");
        const [success] = yield until("updateBookmarkResponsed");
        expect(success, "it was changed");
        yield* queryEverything();
        const changed = recordWith("Van at the gate, gone");
        expect(changed !== undefined && changed.group === group, "the lists show it after a query");
    }

    function* deletingOne() {
        step("Delete one bookmark; it leaves the timeline");
        const {bookmarkID, relayPath} = recordWith("Van");
        expect(firstCell.shows(bookmarkID), "cell-1 shows it");
        expect(bookmarks.deleteBookmark(bookmarkID, relayPath), "the request is handed on");
        const [success] = yield until("deleteBookmarkResponsed");
        expect(success, "it was deleted");
        expect(!firstCell.shows(bookmarkID), "cell-1 no longer shows it");
    }

    function* deletingMany() {
        step("Delete what is left of this tour, on all stations at once");
        yield* queryEverything();
        const left = recordsOf(page("cameraName"));
        bookmarks.deleteBookmarks(left.map(({bookmarkID, relayPath}) => ({
            BookmarkID: bookmarkID,
            relayPath: relayPath
        })));
        const [failed] = yield until("deleteBookmarksResponsed");
        expect(left.length === 3 && failed.length === 0, "all three were deleted");
        yield* queryEverything();
        expect(page("cameraName").totalBookmarkNumber === 0, "nothing of the tour is left");
    }

    function* recycleSettings() {
        step("Read, change and restore the recycle setting");
        bookmarks.getRecycleSetting();
        const [oldHours, oldEnabled] = yield until("getRecycleSettingResponse");

        const tenYears = 10 * 365 * 24; // long enough to spare what earlier days have left
        bookmarks.updateRecycleSetting(tenYears, true);
        const [success] = yield until("updateRecycleSettingResponse");
        expect(success, "it was changed");
        bookmarks.getRecycleSetting();
        const [hours, enabled] = yield until("getRecycleSettingResponse");
        expect(hours === tenYears && enabled, "the server has kept it");

        bookmarks.updateRecycleSetting(oldHours, oldEnabled);
        yield until("updateRecycleSettingResponse");
    }

    function* reconnecting() {
        step("Reconnect to a server in another time zone; times are shown in its zone");
        const startTimestamp = now - 30 * minute;
        bookmarks.addBookmark(camera.cameraID, station.locationID, station.relayPath,
                              startTimestamp, now, "Zones, " + tag, "guard", tag);
        yield until("addBookmarkResponsed");
        yield* queryEverything();
        const before = recordWith("Zones");

        bench.serverTimeZone = "Asia/Tokyo";
        bench.connectToServer();
        yield untilTrue("both answers", () => bench.outstanding === 0);
        yield* queryEverything();
        const after = recordWith("Zones");
        transcript.printRows("before and after", [[before.displayTimeRange], [after.displayTimeRange]]);
        expect(before.displayTimeRange !== after.displayTimeRange, "the texts have changed");
        expect(before.startTimestamp === after.startTimestamp, "the timestamps have not");

        bookmarks.deleteBookmark(after.bookmarkID, after.relayPath);
        const [success] = yield until("deleteBookmarkResponsed");
        expect(success, "it is tidied up");
    }

    function leaving() {
        step("The view cells close");
        firstCell.model = null; // a model dies with its view cell
        secondCell.model = null;
        bookmarks.removeTimelineModel("cell-1");
        bookmarks.removeTimelineModel("cell-2");
    }
}
