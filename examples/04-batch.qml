import QtQuick
import QtQuick.Controls
import Tessaline

/// Adds a bookmark on several cameras with one call and tries again for those that failed. To see
/// a failure, run it with --faults examples/failing-station.json, or use the drawer's tab Faults.
Item {
    id: root

    property var wanted: topology.stations.map(station => station.cameras[0]) // qmllint disable unqualified
    property var failed: [] ///< names of the cameras of the last batch that failed

    TessalinePlugin {
        id: plugin
        target: bookmarks // qmllint disable unqualified
        // Emitted once for the batch, with the last station's answer.
        onAddBookmarksResponsed: failCamNameList => {
            root.failed = failCamNameList;
            print("Failed:", JSON.stringify(failCamNameList));
        }
    }

    function add(cameras: var): void {
        const end = Date.now();
        plugin.addBookmarks(cameras.map(camera => ({
            CameraID: camera.cameraID, LocationID: camera.locationID, relayPath: camera.relayPath
        })), end - 30000, end, "Added by example 04", "developer", "");
    }

    // The other cameras have their bookmarks: repeating the whole batch would add them twice.
    Button {
        anchors.centerIn: parent
        visible: root.failed.length > 0
        text: "Try again on " + root.failed.join(", ")
        onClicked: root.add(root.wanted.filter(camera => root.failed.includes(camera.name)))
    }
    Component.onCompleted: add(wanted)
}
