pragma ComponentBehavior: Bound
import QtQuick
import QtQuick.Controls
import QtQuick.Layouts
import Client.Common
import Integration

/// The differences between the opened recording and a plug-in or another recording.
ColumnLayout {
    id: tab

    required property OpenedRecording recording

    signal chosen(int line)

    component Text: Label {
        textFormat: Text.PlainText
        elide: Text.ElideRight
        Layout.fillWidth: true
    }

    spacing: Theme.gap

    Text {
        objectName: "differencesSummary"
        visible: text !== ""
        text: tab.recording.summary
        font.bold: true
    }
    Repeater {
        model: Math.min(3, tab.recording.remarks.length) // the summary counts all of them
        Text {
            required property int index
            text: tab.recording.remarks[index]
            color: Theme.warning
        }
    }
    TailList {
        id: list
        objectName: "differencesList"
        following: false
        model: tab.recording.differences
        Accessible.name: qsTr("Differences")
        Layout.fillWidth: true
        Layout.fillHeight: true
        delegate: DifferenceRow {
            onChosen: line => tab.chosen(line)
            onToggled: row => tab.recording.differences.toggle(row)
        }
        Keys.onPressed: event => {
            const row = currentItem as DifferenceRow;
            if (row && (event.key === Qt.Key_Return || event.key === Qt.Key_Enter))
                row.chosen(row.line);
            else if (row && event.key === Qt.Key_Space)
                row.toggled(row.index);
        }

        Label {
            anchors.centerIn: parent
            visible: list.count === 0
            color: Theme.faintText
            text: tab.recording.summary !== "" ? qsTr("There are no differences.")
                : qsTr("Open a recording, and replay it or compare it with another one.")
        }
    }
}
