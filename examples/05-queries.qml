import QtQuick
import Tessaline

/// Several queries under way: those with one result list wait for each other, others need not.
Item {
    id: root

    property var waiting: topology.stations.slice() // qmllint disable unqualified
    property var recent: [] ///< display records of all stations

    TessalinePlugin {
        id: plugin
        target: bookmarks // qmllint disable unqualified

        // There is one list of recent bookmarks, and the signal does not name its query. So the next
        // query begins when the one before has ended, well or badly.
        onQueryBookmarkForRecentResponsed: success => {
            if (success)
                root.recent = root.recent.concat(getBookmarkListForRecent());
            root.queryNext();
        }
        // It has a list of its own, so it may be under way meanwhile.
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
            print(station.name, "can't be reached"); // no signal follows
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
