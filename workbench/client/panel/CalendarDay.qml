import QtQuick
import QtQuick.Controls
import Client.Common

/// A day of the calendar.
AbstractButton {
    id: cell

    required property var model ///< the month grid's: year, month, day
    required property string cursor ///< the current day of the keys
    required property string today
    required property string from   ///< start of the chosen range; empty for none
    required property string to
    required property bool focused  ///< the calendar has the keyboard focus

    readonly property string day: "%1-%2-%3".arg(model.year)
        .arg(String(model.month + 1).padStart(2, "0")).arg(String(model.day).padStart(2, "0"))
    readonly property bool inRange: from !== "" && day >= from && day <= to

    objectName: "day-" + day
    implicitWidth: 34
    implicitHeight: 26
    opacity: model.month === Number(cursor.slice(5, 7)) - 1 ? 1 : 0.45
    focusPolicy: Qt.NoFocus
    hoverEnabled: true
    Accessible.name: new Date(model.year, model.month, model.day)
        .toLocaleDateString(Qt.locale(), Locale.LongFormat)

    contentItem: Label {
        text: cell.model.day
        horizontalAlignment: Text.AlignHCenter
        verticalAlignment: Text.AlignVCenter
        font.bold: cell.day === cell.today
        color: cell.day === cell.today ? Theme.accent : Theme.text
    }
    background: Rectangle {
        radius: Theme.radius
        color: cell.inRange ? Theme.selection : cell.hovered ? Theme.raised : "transparent"
        border.width: cell.day === cell.cursor ? 2 : 0
        border.color: cell.focused ? Theme.accent : Theme.line
    }
}
