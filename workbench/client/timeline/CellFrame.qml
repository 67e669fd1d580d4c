import QtQuick
import Client.Common

/// The frame of a view cell. Shows whether the cell is active, and accepts dropped cameras.
DropArea {
    id: frame

    required property bool active  ///< the tool bar controls this cell
    required property bool focused ///< the cell has the keyboard focus

    signal cameraDropped(var camera)

    keys: ["camera"]
    onDropped: event => {
        cameraDropped(event.source.camera);
        event.accept();
    }

    Rectangle {
        anchors.fill: parent
        visible: frame.active || frame.containsDrag
        color: "transparent"
        border.color: frame.focused || frame.containsDrag ? Theme.accent : Theme.faintText
        border.width: 2
    }
}
