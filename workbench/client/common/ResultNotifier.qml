import QtQml

/// Shows the results of requests that change bookmarks, and queries the list afterwards.
QtObject {
    id: notifier

    required property AppState app

    property int changed: 0   ///< edited bookmarks since the last notice
    property int unchanged: 0 ///< failed edits since the last notice
    property bool timelinesOutdated: false ///< timelines must be loaded again after the query

    readonly property Timer soon: Timer {
        interval: 30 // several answers cause one query
        onTriggered: {
            notifier.reportChanges();
            notifier.app.refresh();
            if (notifier.timelinesOutdated)
                notifier.app.timelinesOutdated();
            notifier.timelinesOutdated = false;
        }
    }

    readonly property Connections answers: Connections {
        target: notifier.app.plugin

        function onAddBookmarkResponsed(success) {
            notifier.report(success, qsTr("Bookmark added."), qsTr("Not added, or not shown in a view cell."));
        }
        function onAddBookmarksResponsed(failCamNameList) {
            notifier.report(failCamNameList.length === 0, qsTr("Bookmarks added."),
                            qsTr("Not added, or not shown in a view cell: %1").arg(failCamNameList.join(", ")));
        }
        function onUpdateBookmarkResponsed(success) {
            success ? notifier.changed += 1 : notifier.unchanged += 1;
            notifier.timelinesOutdated = true;
            notifier.soon.restart();
        }
        function onDeleteBookmarkResponsed(success) {
            notifier.report(success, qsTr("Bookmark deleted."),
                            qsTr("The bookmark was not deleted."));
        }
        function onDeleteBookmarksResponsed(failBookmarkIdList) {
            notifier.report(failBookmarkIdList.length === 0,
                            qsTr("%1 bookmarks deleted.").arg(notifier.app.deletedTogether),
                            qsTr("%1 bookmarks were not deleted.").arg(failBookmarkIdList.length));
        }
        function onRemoveAllBookmarksResponsed(success) {
            notifier.report(success, qsTr("All bookmarks of the station removed."),
                            qsTr("The station's bookmarks were not removed."));
            notifier.timelinesOutdated = true;
        }
    }

    function report(success, done, failed) {
        app.notice(success ? done : failed, !success);
        soon.restart();
    }

    /// Shows one notice for all edits, each of which has its own signal.
    function reportChanges() {
        const all = changed + unchanged;
        const failed = unchanged > 0;
        if (all === 1)
            app.notice(failed ? qsTr("The bookmark was not changed.") : qsTr("Bookmark changed."),
                          failed);
        else if (all > 1)
            app.notice(failed ? qsTr("%1 of %2 bookmarks were not changed.").arg(unchanged).arg(all)
                                 : qsTr("%1 bookmarks changed.").arg(all), failed);
        changed = 0;
        unchanged = 0;
    }
}
