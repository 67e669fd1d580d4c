import QtQuick
import Client.Common

/// A frame that marks its parent as having the keyboard focus.
Rectangle {
    property bool shown: false

    anchors.fill: parent
    visible: shown
    color: "transparent"
    border.color: Theme.accent
    border.width: 2
    radius: 2
}
