import QtQuick
import Client.Common

/// A bar of the timeline: a bookmark, or several bookmarks with their number.
Rectangle {
    id: mark

    required property real barX
    required property real barWidth
    required property int lane
    required property int count
    required property bool over
    required property string text
    property real laneHeight: 11

    x: barX
    y: lane * laneHeight + 1
    width: Math.max(2, barWidth)
    height: laneHeight - 1
    color: count > 1 ? Qt.darker(Theme.mark, 1.25) : over ? Qt.lighter(Theme.mark, 1.3) : Theme.mark
    border { width: over ? 1 : 0; color: Theme.surface }
    clip: number.visible

    Accessible.role: Accessible.StaticText
    Accessible.name: count > 1 ? qsTr("%1 bookmarks: %2").arg(count).arg(text) : text

    Text {
        id: number
        anchors.centerIn: parent
        visible: mark.count > 1 && mark.width >= 10
        text: mark.count
        color: Theme.accentText
        font.pixelSize: Theme.smallText - 2
    }
}
