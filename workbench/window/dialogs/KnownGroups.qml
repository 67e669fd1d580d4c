import QtQml
import Workbench

/// The groups that bookmarks have, for suggestions.
QtObject {
    id: known

    required property Client client

    readonly property DateRanges ranges: DateRanges {}

    /// Looks into some pages of all bookmarks in the order of their groups, evenly spread: a group
    /// that is on none of them is a rare one.
    function names() {
        const question = Object.assign({ groupKey: "group", ascending: true },
                                       ranges.range(DateRanges.All, 0));
        const found = new Set();
        let last = 0;
        for (let page = 0; page <= last; page += Math.max(1, Math.floor(last / 20))) {
            const answer = client.bookmarks.getFilteredBookmarkList(
                Object.assign({ pageNumber: page }, question));
            last = Math.ceil(answer.totalBookmarkNumber / 50) - 1;
            answer.bookmarkGroupList.forEach(group => found.add(group.title));
        }
        found.delete("");
        return Array.from(found);
    }
}
