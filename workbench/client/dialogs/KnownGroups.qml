import QtQml
import Client.Common

/// Finds the groups of existing bookmarks.
QtObject {
    id: known

    required property AppState app

    readonly property int timeLimit: 150 ///< milliseconds for a search

    /// Returns the groups, possibly incomplete after the time limit. Searches by bisection: in the
    /// order of groups, all pages between two pages with the same group have this group, too. Widest
    /// gaps first.
    function names() {
        const found = new Set();
        const question = Object.assign({ groupKey: "group", ascending: true },
                                       app.ranges.range(DateRanges.All, 0));
        let pageCount = 0;
        function titles(page) {
            const answer = app.bookmarks.getFilteredBookmarkList(
                Object.assign({ pageNumber: page }, question));
            pageCount = Math.ceil(answer.totalBookmarkNumber / 50);
            const list = answer.bookmarkGroupList.map(group => group.title);
            list.forEach(title => found.add(title));
            return { page: page, first: list[0], last: list[list.length - 1] };
        }

        const firstPage = titles(0); // sorts all bookmarks, so it is slower than the others
        const end = Date.now() + timeLimit;
        const gaps = [[firstPage, titles(Math.max(0, pageCount - 1))]];
        for (const [low, high] of gaps) { // the loop appends to gaps
            if (high.page - low.page < 2 || low.last === high.first)
                continue;
            if (Date.now() > end)
                break;
            const middle = titles(Math.floor((low.page + high.page) / 2));
            gaps.push([low, middle], [middle, high]);
        }
        found.delete("");
        return Array.from(found).sort((a, b) => a.localeCompare(b));
    }
}
