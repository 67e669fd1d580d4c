import QtQuick
import QtQuick.Controls
import Client.Common

/// One entry of the traffic, in columns.
ItemDelegate {
    id: row

    required property int index
    required property double elapsed
    required property string clock
    required property string kind
    required property string name
    required property string relayPath
    required property int context
    required property string code
    required property bool accepted
    required property string summary

    readonly property var marks: ({ call: "\u25b8", connection: "\u25b8", send: "\u2192",
                                    answer: "\u2190", event: "\u2193", signal: "\u2691" })
    readonly property bool narrow: width < 760 ///< for all columns
    readonly property string outcome: !accepted ? qsTr("refused") : code ? qsTr("code %1").arg(code) : ""
    readonly property bool failed: !accepted || (kind === "answer" && code !== "0")

    width: ListView.view.width
    height: Theme.normalText + Theme.gap + 4
    padding: 0
    highlighted: ListView.isCurrentItem
    focusPolicy: Qt.NoFocus
    Accessible.name: clock + " " + kind + " " + name + " " + relayPath + " " + outcome + " " + summary

    onClicked: {
        ListView.view.currentIndex = index;
        ListView.view.forceActiveFocus();
    }

    contentItem: Row {
        leftPadding: Theme.gap
        spacing: Theme.gap

        RowCell { row: row; width: 84; text: row.clock; mono: true; visible: !row.narrow }
        RowCell { row: row; width: 58; text: (row.elapsed / 1000).toFixed(3); mono: true
                  horizontalAlignment: Text.AlignRight }
        RowCell { row: row; width: 80; text: row.marks[row.kind] + " " + row.kind }
        RowCell { row: row; width: row.width < 900 ? 220 : 250; text: row.name; font.bold: true }
        RowCell { row: row; width: 64; text: row.relayPath }
        RowCell { row: row; width: 30; text: row.context > 0 ? "#" + row.context : ""
                  visible: !row.narrow }
        RowCell { row: row; width: 52; text: row.accepted ? row.code : qsTr("refused")
                  alarming: row.failed }
        RowCell { row: row; width: Math.max(40, row.width - x - Theme.gap)
                  text: row.summary; mono: true; alarming: row.failed }
    }
}
