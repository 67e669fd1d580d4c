import QtQuick
import Client.Common
import Client.Panel

/// Reads the panel's page from the plug-in, again after each change, but at most once per frame.
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
    property int pageNumber: 0         ///< the page that the user has chosen
    property int shownPage: 0
    property int total: 0
    property bool anyBookmarks: false  ///< there are bookmarks without the filter
    readonly property int pageCount: Math.max(1, Math.ceil(total / pageSize))
    readonly property int firstShown: total === 0 ? 0 : shownPage * pageSize + 1
    readonly property int lastShown: Math.min(total, (shownPage + 1) * pageSize)

    /// Another page is shown.
    /// @param anew the filter has changed
    signal turned(bool anew)

    /// The model has the page.
    signal loaded()

    function goTo(page) {
        pageNumber = Math.min(Math.max(page, 0), pageCount - 1);
    }

    onPageNumberChanged: {
        keepOldPage.stop();
        request();
        turned(false);
    }
    onDue: {
        if (!keepOldPage.running)
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

    /// @return the bookmarks of a range of the result, on any page; indexes from 0, in any order
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
            keepOldPage.stop();
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
                keepOldPage.restart();
            else
                keepOldPage.stop();
            query.request();
        }
    }

    // A query empties the plug-in's list. Keep the old page until the answers usually arrive, so that
    // a refresh neither flickers nor loses the scroll position.
    Timer {
        id: keepOldPage
        interval: 400
        onTriggered: query.request()
    }

    Component.onCompleted: request()
}
