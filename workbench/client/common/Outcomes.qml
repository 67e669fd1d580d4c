import QtQml

/// What came of requests that change bookmarks: told to the user, and followed by a query.
QtObject {
    id: outcomes

    required property Client client

    property int changed: 0   ///< edited bookmarks that no notice has told of yet
    property int unchanged: 0 ///< the same of those whose edit has failed
    property bool timelinesWait: false ///< for the query

    readonly property Timer soon: Timer {
        interval: 30 // one query after the answers to many requests
        onTriggered: {
            outcomes.reportChanges();
            outcomes.client.refresh();
            if (outcomes.timelinesWait)
                outcomes.client.timelinesOutdated();
            outcomes.timelinesWait = false;
        }
    }

    readonly property Connections answers: Connections {
        target: outcomes.client.plugin

        function onAddBookmarkResponsed(success) {
            outcomes.report(success, qsTr("Bookmark added."), qsTr("Not added, or not shown in a view cell."));
        }
        function onAddBookmarksResponsed(failCamNameList) {
            outcomes.report(failCamNameList.length === 0, qsTr("Bookmarks added."),
                            qsTr("Not added, or not shown in a view cell: %1").arg(failCamNameList.join(", ")));
        }
        function onUpdateBookmarkResponsed(success) {
            success ? outcomes.changed += 1 : outcomes.unchanged += 1;
            outcomes.timelinesWait = true;
            outcomes.soon.restart();
        }
        function onDeleteBookmarkResponsed(success) {
            outcomes.report(success, qsTr("Bookmark deleted."),
                            qsTr("The bookmark was not deleted."));
        }
        function onDeleteBookmarksResponsed(failBookmarkIdList) {
            outcomes.report(failBookmarkIdList.length === 0,
                            qsTr("%1 bookmarks deleted.").arg(outcomes.client.deletedTogether),
                            qsTr("%1 bookmarks were not deleted.").arg(failBookmarkIdList.length));
        }
        function onRemoveAllBookmarksResponsed(success) {
            outcomes.report(success, qsTr("All bookmarks of the station removed."),
                            qsTr("The station's bookmarks were not removed."));
            outcomes.timelinesWait = true;
        }
    }

    function report(success, done, failed) {
        client.notice(success ? done : failed, !success);
        soon.restart();
    }

    /// One notice for all that were edited together, each of which has an outcome.
    function reportChanges() {
        const all = changed + unchanged;
        const failed = unchanged > 0;
        if (all === 1)
            client.notice(failed ? qsTr("The bookmark was not changed.") : qsTr("Bookmark changed."),
                          failed);
        else if (all > 1)
            client.notice(failed ? qsTr("%1 of %2 bookmarks were not changed.").arg(unchanged).arg(all)
                                 : qsTr("%1 bookmarks changed.").arg(all), failed);
        changed = 0;
        unchanged = 0;
    }
}
