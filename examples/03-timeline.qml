pragma ComponentBehavior: Bound
import QtQuick
import Tessaline
import Client.Timeline // CameraPicture, a replacement for the client's picture

/// Shows the bookmarks of a camera on a timeline.
Item {
    id: root

    readonly property var camera: topology.stations[0].cameras[0] // qmllint disable unqualified
    readonly property string uid: "cell-of-example-03" ///< the client's own identifier of the view cell
    readonly property double to: Date.now()
    readonly property double from: to - 7 * 24 * 3600 * 1000
    property QtObject model: null

    TessalinePlugin {
        id: plugin
        target: bookmarks // qmllint disable unqualified
        // The signal does not name the view cell; its model changes.
        onQueryBookmarkForTimelineResponsed: success => print(success ? "Shown " + marks.count : "Failed")
    }

    CameraPicture {
        anchors { fill: parent; bottomMargin: 40 }
        cameraKey: root.camera.key
        caption: root.camera.name
        time: root.to
        timeZone: "UTC"
    }
    Rectangle {
        anchors { left: parent.left; right: parent.right; bottom: parent.bottom }
        height: 40
        color: "black"

        Repeater {
            id: marks
            model: root.model
            Rectangle {
                required property double startTimestampRole
                required property double endTimestampRole
                readonly property double scale: root.width / (root.to - root.from)
                x: (startTimestampRole - root.from) * scale
                width: Math.max(2, (endTimestampRole - startTimestampRole) * scale)
                height: 40
                color: "orange"
            }
        }
    }

    Component.onCompleted: {
        model = plugin.getBookmarkModelForTimeline(uid);
        plugin.setTimelineFocusInfo(camera.locationID, camera.relayPath, uid);
        // The model requests the bookmarks of this range that it lacks.
        plugin.setTimelineBoundary(from, to, uid);
    }
    Component.onDestruction: plugin.removeTimelineModel(uid)
}
