import QtQuick
import QtQuick.Controls
import Client.Common
import Client.Topology

/// Shows a station's state as a coloured dot, with a word unless it is connected.
Row {
    id: mark

    required property string stationState

    spacing: 4

    Label {
        visible: mark.stationState !== "connected" && mark.stationState !== ""
        text: StationStateNames.word(mark.stationState)
        color: StationStateNames.color(mark.stationState)
        font.pixelSize: Theme.smallText
        anchors.verticalCenter: parent.verticalCenter
    }
    Rectangle {
        width: 9
        height: 9
        radius: 5
        color: StationStateNames.color(mark.stationState)
        border.color: Theme.line
        anchors.verticalCenter: parent.verticalCenter
    }
}
