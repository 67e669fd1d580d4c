import QtQuick
import QtQuick.Controls
import QtQuick.Layouts
import Client.Common

/// Selects a range of days in a month: the first choice is the start, the second one the end. Days are
/// ISO texts.
Popup {
    id: calendar

    required property DateRanges ranges

    property string today: ranges.dayOf(Date.now())
    property string cursor: today ///< the current day of the keys; determines the month
    property string first: ""
    property string last: ""   ///< empty until the end of the range is chosen
    readonly property string from: last !== "" && last < first ? last : first
    readonly property string to: last === "" ? first : last < first ? first : last

    /// The range is complete; @p first may be the later day.
    signal chosen(string first, string last)

    padding: Theme.margin
    focus: true
    modal: false

    function openAt(filter) {
        today = ranges.dayOf(Date.now());
        first = filter.firstDay;
        last = filter.lastDay;
        cursor = filter.lastDay || today;
        open();
        grid.forceActiveFocus(Qt.PopupFocusReason);
    }

    function choose(day) {
        cursor = day;
        if (first !== "" && last === "") {
            last = day;
            chosen(first, last);
            close();
        } else {
            first = day;
            last = "";
        }
    }

    function move(days, months) {
        cursor = ranges.dayLater(cursor, days, months);
    }

    ColumnLayout {
        anchors.fill: parent
        spacing: Theme.gap

        RowLayout {
            ToolButton {
                objectName: "previousMonth"
                text: "‹"
                Accessible.name: qsTr("Previous month")
                onClicked: calendar.move(0, -1)
            }
            Label {
                Layout.fillWidth: true
                horizontalAlignment: Text.AlignHCenter
                font.bold: true
                text: qsTr("%1 %2").arg(Qt.locale().standaloneMonthName(grid.month)).arg(grid.year)
            }
            ToolButton {
                objectName: "nextMonth"
                text: "›"
                Accessible.name: qsTr("Next month")
                onClicked: calendar.move(0, 1)
            }
        }
        DayOfWeekRow {
            Layout.fillWidth: true
            font.pixelSize: Theme.smallText
        }
        MonthGrid {
            id: grid
            objectName: "monthGrid"
            Layout.fillWidth: true
            month: Number(calendar.cursor.slice(5, 7)) - 1
            year: Number(calendar.cursor.slice(0, 4))
            activeFocusOnTab: true
            Accessible.role: Accessible.Table
            Accessible.name: qsTr("Calendar, %1").arg(calendar.ranges.shortText(calendar.cursor))
            // The grid sets context properties in its delegates, which bound components can't read.
            // qmllint disable unqualified
            delegate: CalendarDay {
                cursor: calendar.cursor
                today: calendar.today
                from: calendar.from
                to: calendar.to
                focused: grid.activeFocus
                onClicked: calendar.choose(day)
            }
            // qmllint enable unqualified
            Keys.onLeftPressed: calendar.move(-1, 0)
            Keys.onRightPressed: calendar.move(1, 0)
            Keys.onUpPressed: calendar.move(-7, 0)
            Keys.onDownPressed: calendar.move(7, 0)
            Keys.onReturnPressed: calendar.choose(calendar.cursor)
            Keys.onEnterPressed: calendar.choose(calendar.cursor)
            Keys.onSpacePressed: calendar.choose(calendar.cursor)
            Keys.onPressed: event => {
                if (event.key === Qt.Key_PageUp || event.key === Qt.Key_PageDown) {
                    calendar.move(0, event.key === Qt.Key_PageUp ? -1 : 1);
                    event.accepted = true;
                }
            }
        }
        Label {
            color: Theme.faintText
            font.pixelSize: Theme.smallText
            text: calendar.first !== "" && calendar.last === "" ? qsTr("Now choose the last day.")
                                                                : qsTr("Choose the first day.")
        }
    }
}
