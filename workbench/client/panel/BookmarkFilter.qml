import QtQml
import Client.Common

/// The filter and order of the bookmarks that the user chooses.
QtObject {
    id: filter

    required property AppState app

    property string text: ""
    property int preset: DateRanges.All
    property string firstDay: "" ///< ISO day in the server's zone; for the preset Days
    property string lastDay: ""
    property string timeOfDay: "" ///< like "22:00-06:00", in the server's zone; empty: any time
    property string groupKey: "displayDate"
    property bool ascending: false

    readonly property string nodeID: app.currentCamera ? app.currentCamera.key : ""
    /// True if the filter may hide bookmarks.
    readonly property bool active: text !== "" || nodeID !== "" || preset !== DateRanges.All
                                   || timeOfDay !== ""

    /// All criteria in one value, which changes with each of them.
    readonly property var criteria: ({
            text: text,
            timeOfDay: timeOfDay,
            nodeID: nodeID,
            groupKey: groupKey,
            ascending: ascending,
            preset: preset,
            firstDay: firstDay,
            lastDay: lastDay,
            timeZone: ranges.timeZone
        })

    readonly property DateRanges ranges: app.ranges

    /// Returns the argument of getFilteredBookmarkList() for a page. Not a property, because "today"
    /// depends on the time.
    function pageWanted(pageNumber) {
        return Object.assign({ pageNumber: pageNumber }, criteria,
                             ranges.range(preset, Date.now(), firstDay, lastDay));
    }

    function anything() {
        return ranges.range(DateRanges.All, 0);
    }

    function clear() {
        text = "";
        timeOfDay = "";
        preset = DateRanges.All;
        app.currentCamera = null;
    }

    function chooseDays(first, last) {
        firstDay = first < last ? first : last;
        lastDay = first < last ? last : first;
        preset = DateRanges.Days;
    }

    function saveState() {
        return {
            text: text,
            timeOfDay: timeOfDay,
            preset: preset,
            firstDay: firstDay,
            lastDay: lastDay,
            groupKey: groupKey,
            ascending: ascending
        };
    }

    function restoreState(state) {
        text = state.text ?? "";
        timeOfDay = state.timeOfDay ?? "";
        preset = state.preset ?? DateRanges.All;
        firstDay = state.firstDay ?? "";
        lastDay = state.lastDay ?? "";
        groupKey = state.groupKey ?? "displayDate";
        ascending = state.ascending ?? false;
    }
}
