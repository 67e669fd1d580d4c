import QtQuick
import QtQuick.Controls
import QtQuick.Layouts
import Client.Common
import Integration

/// Says that the list shows a recording, above it.
Rectangle {
    id: bar

    required property OpenedRecording recording

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
            Layout.maximumWidth: bar.width / 2
        }
        Label {
            objectName: "openedProblem"
            text: bar.recording.problem
            textFormat: Text.PlainText
            color: Theme.failure
            elide: Text.ElideRight
            Layout.fillWidth: true
            HoverHandler { id: hover }
            ToolTip.visible: hover.hovered && truncated
            ToolTip.text: text
        }
        BarButton {
            objectName: "closeRecording"
            text: qsTr("Live traffic")
            hint: qsTr("Close the recording and show what passes now")
            onClicked: bar.recording.close()
        }
    }
}
