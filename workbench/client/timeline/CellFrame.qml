import QtQuick
import Client.Common

/// The frame of a view cell, which tells where it stands, and the place onto which cameras are
/// dropped.
DropArea {
    id: frame

    required property bool active  ///< the tool bar's controls are for this cell
    required property bool focused ///< the keys go to it

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
