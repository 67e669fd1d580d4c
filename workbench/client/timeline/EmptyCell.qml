import QtQuick
import QtQuick.Controls
import Client.Common

/// The background of a view cell. In an empty cell it shows how to fill it.
Rectangle {
    property alias hinting: hint.visible

    color: Theme.surface
    border.color: Theme.line

    Label {
        id: hint
        anchors.fill: parent
        anchors.margins: Theme.margin
        text: qsTr("Drag a camera here, or double-click one in the list.")
        color: Theme.faintText
        wrapMode: Text.Wrap
        horizontalAlignment: Text.AlignHCenter
        verticalAlignment: Text.AlignVCenter
    }
}
