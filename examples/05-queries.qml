import QtQuick
import Tessaline

/// Sends several queries. Queries that share a result list must wait for each other.
Item {
    id: root

    property var waiting: topology.stations.slice() // qmllint disable unqualified
    property var recent: [] ///< display records of all stations

    TessalinePlugin {
        id: plugin
        target: bookmarks // qmllint disable unqualified

        // All queries for recent bookmarks share one list, and the signal does not name its query.
        // So send the next one only after the signal, whether it reports success or failure.
        onQueryBookmarkForRecentResponsed: success => {
            if (success)
                root.recent = root.recent.concat(getBookmarkListForRecent());
            root.queryNext();
        }
        // This query has its own list, so it may run at the same time.
        onQueryAllBookmarksResponsed: done => {
            if (done)
                print("All:", getBookmarkListByNodeID("").length > 0);
        }
    }

    function queryNext(): void {
        while (waiting.length > 0) {
            const station = waiting.shift();
            if (plugin.queryBookmarkForRecent(station.locationID, station.relayPath, 2))
                return;
            print(station.name, "can't be reached"); // the plug-in emits no signal
        }
        print("Recent:", recent.length);
        plugin.getRecycleSetting();
    }

    ListView {
        anchors.fill: parent
        model: root.recent
        delegate: Text {
            required property var modelData
            text: modelData.displayDateTime + "  " + modelData.cameraName + "  " + modelData.description
        }
    }
    Component.onCompleted: {
        plugin.queryAllBookmarks();
        queryNext();
    }
}
