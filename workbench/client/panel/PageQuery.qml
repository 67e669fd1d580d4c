import QtQuick
import Client.Common
import Client.Panel

/// Asks the plug-in for the page that the panel shows, again whenever something changes that it
/// depends on, but once a frame at most.
FrameUpdate {
    id: query

    required property AppState app
    required property BookmarkFilter filter
    required property PageModel model

    readonly property FoundRecords found: FoundRecords {
        app: query.app
        filter: query.filter
    }
    readonly property int pageSize: found.pageSize
    property int pageNumber: 0         ///< what the user wants to see
    property int shownPage: 0
    property int total: 0
    property bool anyBookmarks: false  ///< whether there are bookmarks when nothing is left out
    readonly property int pageCount: Math.max(1, Math.ceil(total / pageSize))
    readonly property int firstShown: total === 0 ? 0 : shownPage * pageSize + 1
    readonly property int lastShown: Math.min(total, (shownPage + 1) * pageSize)

    /// The page is not what it was before, but another one; of another result when @p anew.
    signal turned(bool anew)

    /// The model has got a page.
    signal loaded()

    function goTo(page) {
        pageNumber = Math.min(Math.max(page, 0), pageCount - 1);
    }

    onPageNumberChanged: {
        patience.stop();
        request();
        turned(false);
    }
    onDue: {
        if (!patience.running)
            load();
    }

    function load() {
        const wanted = filter.pageWanted(pageNumber);
        const page = filter.timeOfDay === "" ? app.bookmarks.getFilteredBookmarkList(wanted)
                                             : found.finder.page(wanted);
        total = page.totalBookmarkNumber;
        anyBookmarks = total > 0 || app.bookmarks.getFilteredBookmarkList(filter.anything())
            .totalBookmarkNumber > 0;
        model.setGroups(page.bookmarkGroupList);
        shownPage = pageNumber < pageCount ? pageNumber : 0; // as the plug-in does
        if (!app.querying)
            pageNumber = Math.min(pageNumber, pageCount - 1);
        loaded();
    }

    /// The bookmarks from one place in the result to another, counted from 0, in any order and on
    /// whatever pages they are.
    function recordsBetween(first, last) {
        const from = Math.min(first, last);
        const to = Math.max(first, last);
        const records = [];
        for (let page = Math.floor(from / pageSize); page * pageSize <= to; ++page) {
            const start = page * pageSize;
            records.push(...recordsOf(page).slice(Math.max(0, from - start), to - start + 1));
        }
        return records;
    }

    function recordsOf(page) {
        return page === shownPage ? model.recordsBetween(0, pageSize - 1) : found.recordsOf(page);
    }

    Connections {
        target: query.filter
        function onCriteriaChanged() {
            patience.stop();
            query.pageNumber = 0;
            query.request();
            query.turned(true);
        }
    }
    Connections {
        target: query.app
        function onRevisionChanged() {
            query.request();
        }
        function onQueryingChanged() {
            if (query.app.querying && query.total > 0)
                patience.restart();
            else
                patience.stop();
            query.request();
        }
    }

    // A query empties the plug-in's list. The old page stays for the moment that the answers
    // usually take, so that a refresh neither flickers nor loses its place.
    Timer {
        id: patience
        interval: 400
        onTriggered: query.request()
    }

    Component.onCompleted: request()
}
