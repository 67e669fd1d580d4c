import QtQuick
import QtQuick.Controls
import Client.Common

/// A label that follows the pointer while a camera is dragged. View cells read its camera.
Rectangle {
    id: ghost
    objectName: "cameraGhost"

    required property var camera
    required property string text
    required property point position ///< of the pointer, in the parent

    x: position.x + 8
    y: position.y + 8
    z: 10
    width: label.implicitWidth + 2 * Theme.margin
    height: label.implicitHeight + 2 * Theme.gap
    radius: Theme.radius
    color: Theme.selection
    border.color: Theme.accent

    Drag.keys: ["camera"]
    Drag.source: ghost
    Drag.hotSpot: Qt.point(-8, -8)

    Label {
        id: label
        anchors.centerIn: parent
        text: ghost.text
    }
}
