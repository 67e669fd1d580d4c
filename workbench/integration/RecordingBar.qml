import QtQuick
import QtQuick.Controls
import QtQuick.Layouts
import Client.Common
import Integration

/// The bar above an opened recording: its title, problems and comparison.
Rectangle {
    id: bar

    required property OpenedRecording recording

    signal compareWanted()
    signal differencesWanted()

    objectName: "recordingBar"
    implicitHeight: content.implicitHeight
    radius: Theme.radius
    color: Theme.selection

    RowLayout {
        id: content
        anchors { fill: parent; leftMargin: Theme.gap }
        spacing: Theme.margin

        Label {
            objectName: "openedTitle"
            text: bar.recording.title
            textFormat: Text.PlainText
            font.bold: true
            elide: Text.ElideMiddle
            Layout.maximumWidth: bar.width / 3
        }
        Label {
            objectName: "openedState"
            text: bar.recording.replaying ? qsTr("Replaying…")
                : bar.recording.problem + " " + bar.recording.result
            textFormat: Text.PlainText
            color: bar.recording.problem !== "" || bar.recording.firstLine > 0 ? Theme.failure : Theme.text
            elide: Text.ElideRight
            Layout.fillWidth: true
            HoverHandler { id: hover }
            ToolTip.visible: hover.hovered && truncated
            ToolTip.text: text
        }
        BarButton {
            objectName: "showDifferences"
            visible: bar.recording.firstLine > 0
            text: qsTr("Differences")
            hint: qsTr("List all of them")
            onClicked: bar.differencesWanted()
        }
        BarButton {
            objectName: "replayRecording"
            text: bar.recording.replaying ? qsTr("Stop") : qsTr("Replay")
            hint: qsTr("Play it to a newly loaded plug-in and compare what that does")
            onClicked: bar.recording.replaying ? bar.recording.stopReplay() : bar.recording.replay()
        }
        BarButton {
            objectName: "compareRecording"
            text: qsTr("Compare…")
            hint: qsTr("Compare it with another recording")
            onClicked: bar.compareWanted()
        }
        BarButton {
            objectName: "closeRecording"
            text: qsTr("Live traffic")
            hint: qsTr("Close the recording and show what passes now")
            onClicked: bar.recording.close()
        }
    }
}
