import QtQml

/// A tour of the plug-in's interface and an example of its use from QML. Each step makes the calls of
/// a bookmark panel or timeline bar and waits for the same signals.
TourRunner {
    id: tour

    readonly property var station: workbench.stations[0]
    readonly property var camera: station.cameras[0]
    readonly property var otherStation: workbench.stations[1]
    readonly property var failingStation: workbench.stations[2]

    // All bookmarks of this tour have its tag, because the stations may have older bookmarks.
    readonly property double now: workbench.now
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
        step("Before the connection the plug-in deletes nothing");
        expect(!bookmarks.deleteBookmark("any", station.relayPath), "the request is rejected");
        const [success] = yield until("deleteBookmarkResponsed");
        expect(!success, "the signal reports the failure");
        expect(workbench.stationsAsked("DeleteBookmark").length === 0, "no command was sent");
    }

    function* connecting() {
        step("Connect: the plug-in queries the server's time zone and the user's permission");
        workbench.connectToServer();
        yield untilTrue("both answers", () => workbench.outstanding === 0);
        expect(workbench.stationsAsked("QuerySevTimezone").length === 1, "the time zone was queried");
        expect(workbench.stationsAsked("QuerySettingPermission").length === 1,
               "the permission was queried");
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

        // The model requests the bookmarks of this range that it lacks, and the plug-in queries them.
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
               "the request is accepted");
        const [success] = yield until("addBookmarkResponsed");
        expect(success, "it was added");
        expect(firstCell.count === before + 1, "cell-1 has one row more");
        transcript.printRows("cell-1", firstCell.columns());
    }

    function* addingMany() {
        step("Add on a camera of each station at once; one station fails");
        const targets = workbench.stations.map(({ relayPath, locationID, cameras }) => ({
            CameraID: cameras[1].cameraID,
            LocationID: locationID,
            relayPath: relayPath
        }));
        workbench.failStation(failingStation.relayPath, true);
        expect(bookmarks.addBookmarks(targets, now - 5 * minute, now - 4 * minute,
                                      "Alarm, " + tag, "guard", tag),
               "the request is accepted");
        const [failedCameras] = yield until("addBookmarksResponsed");
        workbench.failStation(failingStation.relayPath, false);

        expect(workbench.stationsAsked("AddBookmarks").length === 3, "one command for each station");
        expect(failedCameras.length === 1 && failedCameras[0] === failingStation.cameras[1].name,
               "the camera of the failing station is named");
    }

    function* queryEverything() {
        expect(bookmarks.queryAllBookmarks(), "the request is accepted");
        let done = false;
        while (!done)
            [done] = yield until("queryAllBookmarksResponsed"); // false: not the last answer
    }

    function* queryingAll() {
        step("Query all bookmarks of all stations");
        yield* queryEverything();
        expect(workbench.stationsAsked("QueryAllBookmars").length === workbench.stations.length,
               "every station got the command");
    }

    /// Returns the panel's page of this tour's bookmarks.
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

    /// Returns the records of all groups of a page.
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
               "the request is accepted");
        const [success] = yield until("queryBookmarkForRecentResponsed");
        expect(success, "it was answered");
        const recent = bookmarks.getBookmarkListForRecent();
        expect(recent.length === 2, "there are two");
        transcript.printRows("recent", recent.map(record => [
            record.displayDateTime, record.cameraName, record.description
        ]));
    }

    function* otherClient() {
        step("Another client adds a bookmark; an event reports it");
        const before = secondCell.count;
        expect(workbench.addByOtherClient(otherStation.relayPath, otherStation.cameras[2].cameraID,
                                          now - 2 * minute, now - minute,
                                          "Seen from elsewhere, " + tag, tag),
               "the station exists");
        yield untilTrue("a new row in cell-2", () => secondCell.count === before + 1);
        expect(secondCell.count === before + 1, "cell-2 has one row more");
        expect(workbench.stationsAsked("QueryBookmarkForTimeline").length === 0,
               "no timeline query was needed");
        transcript.printRows("cell-2", secondCell.columns());
    }

    function* updating() {
        step("Change a description and leave the group as it is");
        const {bookmarkID, group} = recordWith("Van");
        expect(bookmarks.updateBookmark(bookmarkID, "Van at the gate, gone, " + tag),
               "the request is accepted");
        const [success] = yield until("updateBookmarkResponsed");
        expect(success, "it was changed");
        yield* queryEverything();
        const changed = recordWith("Van at the gate, gone");
        expect(changed !== undefined && changed.group === group, "the list has the change after a query");
    }

    function* deletingOne() {
        step("Delete one bookmark; it leaves the timeline");
        const {bookmarkID, relayPath} = recordWith("Van");
        expect(firstCell.shows(bookmarkID), "cell-1 shows it");
        expect(bookmarks.deleteBookmark(bookmarkID, relayPath), "the request is accepted");
        const [success] = yield until("deleteBookmarkResponsed");
        expect(success, "it was deleted");
        expect(!firstCell.shows(bookmarkID), "cell-1 no longer shows it");
    }

    function* deletingMany() {
        step("Delete the remaining bookmarks of this tour, on all stations at once");
        yield* queryEverything();
        const left = recordsOf(page("cameraName"));
        bookmarks.deleteBookmarks(left.map(({bookmarkID, relayPath}) => ({
            BookmarkID: bookmarkID,
            relayPath: relayPath
        })));
        const [failed] = yield until("deleteBookmarksResponsed");
        expect(left.length === 3 && failed.length === 0, "all three were deleted");
        yield* queryEverything();
        expect(page("cameraName").totalBookmarkNumber === 0, "no bookmark of the tour is left");
    }

    function* recycleSettings() {
        step("Read, change and restore the recycle setting");
        bookmarks.getRecycleSetting();
        const [oldHours, oldEnabled] = yield until("getRecycleSettingResponse");

        const tenYears = 10 * 365 * 24; // long enough to keep all existing bookmarks
        bookmarks.updateRecycleSetting(tenYears, true);
        const [success] = yield until("updateRecycleSettingResponse");
        expect(success, "it was changed");
        bookmarks.getRecycleSetting();
        const [hours, enabled] = yield until("getRecycleSettingResponse");
        expect(hours === tenYears && enabled, "the server has stored it");

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

        workbench.serverTimeZone = "Asia/Tokyo";
        workbench.connectToServer();
        yield untilTrue("both answers", () => workbench.outstanding === 0);
        yield* queryEverything();
        const after = recordWith("Zones");
        transcript.printRows("before and after", [[before.displayTimeRange], [after.displayTimeRange]]);
        expect(before.displayTimeRange !== after.displayTimeRange, "the texts have changed");
        expect(before.startTimestamp === after.startTimestamp, "the timestamps have not");

        bookmarks.deleteBookmark(after.bookmarkID, after.relayPath);
        const [success] = yield until("deleteBookmarkResponsed");
        expect(success, "the bookmark was deleted");
    }

    function leaving() {
        step("The view cells close");
        firstCell.model = null; // removeTimelineModel() deletes the model
        secondCell.model = null;
        bookmarks.removeTimelineModel("cell-1");
        bookmarks.removeTimelineModel("cell-2");
    }
}
