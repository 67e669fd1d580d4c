import QtQuick
import QtQuick.Controls
import Tessaline

/// A bookmark on several cameras at once, and another try for those that failed.
/// --faults examples/failing-station.json or the drawer's tab Faults makes a station fail.
Item {
    id: root

    property var wanted: topology.stations.map(station => station.cameras[0]) // qmllint disable unqualified
    property var failed: [] ///< names of the cameras of the last batch that failed

    TessalinePlugin {
        id: plugin
        target: bookmarks // qmllint disable unqualified
        // Once for the whole batch, when the last station has answered.
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

    // Bookmarks on the other cameras are stored: adding the whole batch again would add them twice.
    Button {
        anchors.centerIn: parent
        visible: root.failed.length > 0
        text: "Try again on " + root.failed.join(", ")
        onClicked: root.add(root.wanted.filter(camera => root.failed.includes(camera.name)))
    }
    Component.onCompleted: add(wanted)
}
