import QtQml
import Client.Common
import Client.Panel

/// Reads the display records that match the filter, on any page.
QtObject {
    id: found

    required property AppState app
    required property BookmarkFilter filter

    readonly property RecordFinder finder: RecordFinder {
        plugin: found.app.plugin
        timeZone: found.app.timeZone
    }
    readonly property int pageSize: 50 ///< fixed by the plug-in

    function recordsOf(page) {
        return recordsIn(finder.page(filter.pageWanted(page)));
    }

    function recordsIn(page) {
        return [].concat(...page.bookmarkGroupList.map(group => group.bookmarkList));
    }

    /// Returns the records of the pages from wanted.pageNumber on.
    /// @param enough gets the records so far; returns true to stop
    function pages(wanted, enough) {
        const records = [];
        for (let count = 1; wanted.pageNumber < count; ++wanted.pageNumber) {
            const page = finder.page(wanted);
            count = Math.ceil(page.totalBookmarkNumber / pageSize);
            records.push(...recordsIn(page));
            if (enough(records))
                break;
        }
        return records;
    }

    /// @return a list of the records that match the filter and a list of the others
    function shownAndHidden(records) {
        const wanted = filter.pageWanted(0);
        const shown = [];
        const hidden = [];
        for (const record of records)
            (!filter.active || matches(record, wanted) ? shown : hidden).push(record);
        return [shown, hidden];
    }

    /// @return true if a record matches. The plug-in compares the text: it filters the records that
    /// start at the same moment.
    function matches(record, wanted) {
        const moment = record.startTimestamp;
        const key = app.topology.keyOf(record);
        if (moment < wanted.startTimestamp || moment > wanted.endTimestamp
                || (wanted.nodeID !== "" && wanted.nodeID !== key))
            return false;
        if (wanted.text === "" && wanted.timeOfDay === "")
            return true;
        const isIn = records => records.some(one => one.bookmarkID === record.bookmarkID
                                             && one.relayPath === record.relayPath);
        return isIn(pages(Object.assign({}, wanted, { startTimestamp: moment, endTimestamp: moment }),
                          isIn));
    }
}
