import QtQml
import Client.Common

/// The groups that bookmarks have, for suggestions.
QtObject {
    id: known

    required property AppState app

    readonly property int patience: 150 ///< milliseconds after which nothing more is looked for

    /// All of them, unless there are very many. In the order of groups, all pages between two that
    /// show the same group show it as well; the others are halved, the widest gaps first.
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

        const firstPage = titles(0); // for which the plug-in orders all bookmarks
        const end = Date.now() + patience;
        const gaps = [[firstPage, titles(Math.max(0, pageCount - 1))]];
        for (const [low, high] of gaps) { // which grow meanwhile
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
