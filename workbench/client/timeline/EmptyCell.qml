import QtQuick
import QtQuick.Controls
import Client.Common

/// The ground of a view cell. Where it can be seen it tells how to fill the cell.
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
