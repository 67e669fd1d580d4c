import QtQml

/// Gives the plug-in's object types, so that tools check calls, arguments and signals. Do not edit
/// this file: a test compares it with the plug-in.
QtObject {
    id: access

    /// The plug-in's object, which the client puts into the QML context.
    required property var target

    signal addBookmarkResponsed(success: bool)
    signal addBookmarksResponsed(failCamNameList: var)
    signal deleteBookmarkResponsed(success: bool)
    signal deleteBookmarksResponsed(failBookmarkIdList: var)
    signal removeAllBookmarksResponsed(success: bool)
    signal updateBookmarkResponsed(success: bool)
    signal queryBookmarkForTimelineResponsed(success: bool)
    signal queryBookmarkForRecentResponsed(success: bool)
    signal queryAllBookmarksResponsed(done: bool)
    signal queryBookmarkForApiFinished(success: bool)
    signal getRecycleSettingResponse(reserveHour: double, enableRecycle: bool)
    signal updateRecycleSettingResponse(success: bool)

    function addBookmark(cameraID: string, locationID: string, relayPath: string,
            startTimestamp: double, endTimestamp: double, desc: string, creator: string,
            group: string): bool {
        return target.addBookmark(cameraID, locationID, relayPath, startTimestamp, endTimestamp,
            desc, creator, group);
    }
    function addBookmarks(targetList: var, startTimestamp: double, endTimestamp: double,
            desc: string, creator: string, group: string): bool {
        return target.addBookmarks(targetList, startTimestamp, endTimestamp, desc, creator, group);
    }
    function addBookmarksByText(targetList: var, startDateTime: string, endDateTime: string,
            desc: string, creator: string, group: string): bool {
        return target.addBookmarks(targetList, startDateTime, endDateTime, desc, creator, group);
    }
    function deleteBookmark(bookmarkID: string, relayPath: string): bool {
        return target.deleteBookmark(bookmarkID, relayPath);
    }
    function deleteBookmarks(deleteList: var): bool {
        return target.deleteBookmarks(deleteList);
    }
    function updateBookmark(bookmarkID: string, desc: var, group: var): bool {
        return target.updateBookmark(bookmarkID, desc, group);
    }
    function removeAllBookmarks(relayPath: string): bool {
        return target.removeAllBookmarks(relayPath);
    }
    function queryBookmarkForRecent(cameraID: string, relayPath: string, recentCnt: int): bool {
        return target.queryBookmarkForRecent(cameraID, relayPath, recentCnt);
    }
    function queryAllBookmarks(): bool {
        return target.queryAllBookmarks();
    }
    function queryBookmarkForAPIByText(camIdList: var, startDateTime: string,
            endDateTime: string): void {
        target.queryBookmarkForAPI(camIdList, startDateTime, endDateTime);
    }
    function queryBookmarkForAPI(camIdList: var, startTimestamp: double,
            endTimestamp: double): void {
        target.queryBookmarkForAPI(camIdList, startTimestamp, endTimestamp);
    }
    function clearTimelineModel(viewCellUID: string): void {
        target.clearTimelineModel(viewCellUID);
    }
    function removeTimelineModel(viewCellUID: string): void {
        target.removeTimelineModel(viewCellUID);
    }
    function setTimelineFocusInfo(locationID: string, relayPath: string,
            viewCellUID: string): void {
        target.setTimelineFocusInfo(locationID, relayPath, viewCellUID);
    }
    function setTimelineBoundary(headBoundTs: double, tailBoundTs: double,
            viewCellUID: string): void {
        target.setTimelineBoundary(headBoundTs, tailBoundTs, viewCellUID);
    }
    function getRecycleSetting(): void {
        target.getRecycleSetting();
    }
    function updateRecycleSetting(reserveHour: double, enableRecycle: bool): void {
        target.updateRecycleSetting(reserveHour, enableRecycle);
    }
    function getBookmarkModelForTimeline(viewCellUID: string): QtObject {
        return target.getBookmarkModelForTimeline(viewCellUID);
    }
    function getBookmarkListForRecent(): var {
        return target.getBookmarkListForRecent();
    }
    function getBookmarkListByNodeID(nodeID: string): var {
        return target.getBookmarkListByNodeID(nodeID);
    }
    function getFilteredBookmarkList(filterMap: var): var {
        return target.getFilteredBookmarkList(filterMap);
    }
    function getQueryBookmarkResult(): var {
        return target.getQueryBookmarkResult();
    }

    readonly property Connections forwarding: Connections {
        target: access.target

        function onAddBookmarkResponsed(success) {
            access.addBookmarkResponsed(success);
        }
        function onAddBookmarksResponsed(failCamNameList) {
            access.addBookmarksResponsed(failCamNameList);
        }
        function onDeleteBookmarkResponsed(success) {
            access.deleteBookmarkResponsed(success);
        }
        function onDeleteBookmarksResponsed(failBookmarkIdList) {
            access.deleteBookmarksResponsed(failBookmarkIdList);
        }
        function onRemoveAllBookmarksResponsed(success) {
            access.removeAllBookmarksResponsed(success);
        }
        function onUpdateBookmarkResponsed(success) {
            access.updateBookmarkResponsed(success);
        }
        function onQueryBookmarkForTimelineResponsed(success) {
            access.queryBookmarkForTimelineResponsed(success);
        }
        function onQueryBookmarkForRecentResponsed(success) {
            access.queryBookmarkForRecentResponsed(success);
        }
        function onQueryAllBookmarksResponsed(done) {
            access.queryAllBookmarksResponsed(done);
        }
        function onQueryBookmarkForApiFinished(success) {
            access.queryBookmarkForApiFinished(success);
        }
        function onGetRecycleSettingResponse(reserveHour, enableRecycle) {
            access.getRecycleSettingResponse(reserveHour, enableRecycle);
        }
        function onUpdateRecycleSettingResponse(success) {
            access.updateRecycleSettingResponse(success);
        }
    }
}
