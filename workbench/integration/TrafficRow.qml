import QtQuick
import QtQuick.Controls
import Client.Common

/// A row of the traffic.
ItemDelegate {
    id: row

    required property TrafficColumns columns
    required property int index
    required property double elapsed
    required property int call
    required property int depth
    required property double took
    required property int commandCount
    required property int answeredCount
    required property string clock
    required property string kind
    required property string name
    required property string relayPath
    required property string code
    required property bool accepted
    required property string summary
    required property string difference ///< of a recording that was compared
    required property bool follows      ///< from an earlier difference

    readonly property var marks: ({ call: "\u25b8", connection: "\u25b8", send: "\u2192",
                                    answer: "\u2190", event: "\u2193", signal: "\u2691" })
    readonly property bool unanswered: kind === "send" && accepted && took < 0
    /// The duration of a command or answer; for a call the number of answered commands.
    readonly property string progress: unanswered ? qsTr("no answer")
        : took >= 0 ? qsTr("%1 ms").arg(took)
        : commandCount > 0 ? qsTr("%1 of %2").arg(answeredCount).arg(commandCount) : ""
    readonly property string outcome: !accepted ? qsTr("rejected") : code ? qsTr("code %1").arg(code) : ""
    readonly property bool failed: !accepted || (kind === "answer" && code !== "0")

    width: ListView.view.width
    height: Theme.normalText + Theme.gap + 4
    padding: 0
    highlighted: ListView.isCurrentItem
    focusPolicy: Qt.NoFocus
    Accessible.name: clock + " " + kind + " " + name + " " + relayPath + " " + outcome + " "
        + progress + " " + summary + " " + difference

    onClicked: {
        ListView.view.currentIndex = index;
        ListView.view.forceActiveFocus();
    }

    Rectangle {
        objectName: "differenceMark"
        width: Theme.gap - 1
        height: parent.height
        visible: row.difference !== ""
        color: row.follows ? Theme.warning : Theme.failure
    }
    contentItem: Row {
        leftPadding: Theme.gap
        spacing: Theme.gap

        RowCell { row: row; width: row.columns.widths[0]; text: row.clock; mono: true }
        RowCell { row: row; width: row.columns.widths[1]; text: row.call; horizontalAlignment: Text.AlignRight }
        RowCell { row: row; width: row.columns.widths[2]; text: row.marks[row.kind] + " " + row.kind }
        RowCell { row: row; width: row.columns.widths[3];
                  text: row.name; font.bold: row.depth === 0; leftPadding: Math.min(row.depth, 8) * 12 }
        RowCell { row: row; width: row.columns.widths[4]; text: row.relayPath }
        RowCell { row: row; width: row.columns.widths[5];
                  text: row.accepted ? row.code : qsTr("rejected"); alarming: row.failed }
        RowCell { row: row; width: row.columns.widths[6];
                  text: row.progress; horizontalAlignment: Text.AlignRight
                  alarming: row.unanswered || row.answeredCount < row.commandCount }
        RowCell { row: row; width: Math.max(40, row.width - x - Theme.gap)
                  text: row.summary; mono: true; alarming: row.failed }
    }
}
