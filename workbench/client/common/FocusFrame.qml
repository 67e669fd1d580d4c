import QtQuick
import Client.Common

/// Shows that the keys go to the item around which it lies.
Rectangle {
    property bool shown: false

    anchors.fill: parent
    visible: shown
    color: "transparent"
    border.color: Theme.accent
    border.width: 2
    radius: 2
}
