import QtQuick
import QtQuick.Controls
import Client.Common

/// A row of the log.
ItemDelegate {
    id: row

    required property int index
    required property string clock
    required property string severity
    required property string place
    required property string line

    readonly property bool bad: severity === "error" || severity === "fatal"

    width: ListView.view.width
    height: Theme.normalText + Theme.gap + 4
    padding: 0
    highlighted: ListView.isCurrentItem
    focusPolicy: Qt.NoFocus
    Accessible.name: clock + " " + severity + " " + place + " " + line

    onClicked: {
        ListView.view.currentIndex = index;
        ListView.view.forceActiveFocus();
    }

    contentItem: Row {
        leftPadding: Theme.gap
        spacing: Theme.gap

        RowCell { row: row; width: 84; text: row.clock; mono: true }
        RowCell { row: row; width: 64; text: row.severity; alarming: row.bad }
        RowCell { row: row; width: 250; text: row.place; mono: true }
        RowCell { row: row; width: Math.max(40, row.width - x - Theme.gap)
                  text: row.line; alarming: row.bad }
    }
}
