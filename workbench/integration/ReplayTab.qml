import QtQuick
import QtQuick.Controls
import Client.Common

/// What the replay at the start of the program has found.
TailList {
    id: list

    required property var report

    objectName: "replayList"
    following: false
    model: report
    Accessible.name: qsTr("Replay")
    delegate: Label {
        required property string modelData
        width: ListView.view.width
        text: modelData
        wrapMode: Text.Wrap
        textFormat: Text.PlainText
        font.family: "monospace"
    }

    Label {
        anchors.centerIn: parent
        visible: list.count === 0
        color: Theme.faintText
        text: qsTr("Start the workbench with --replay FILE to play a saved session again.")
    }
}
