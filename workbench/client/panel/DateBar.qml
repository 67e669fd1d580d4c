pragma ComponentBehavior: Bound
import QtQuick
import QtQuick.Controls
import Client.Common
import Client.Panel

/// Selects a date range: presets, the calendar and the time of day.
Flow {
    id: bar

    required property BookmarkFilter filter
    required property RecordFinder finder

    spacing: 2

    component Choice: ToolButton {
        required property int preset
        checked: bar.filter.preset === preset
        horizontalPadding: 4 // so that all choices fit in one line
        focusPolicy: Qt.StrongFocus
        Accessible.role: Accessible.RadioButton
        Accessible.checked: checked
        onClicked: {
            if (preset !== DateRanges.Days) // the calendar sets this preset
                bar.filter.preset = preset;
        }
    }

    Choice {
        objectName: "presetAll"
        preset: DateRanges.All
        text: qsTr("All")
        Accessible.name: qsTr("All days")
    }
    Choice {
        objectName: "presetToday"
        preset: DateRanges.Today
        text: qsTr("Today")
    }
    Choice {
        objectName: "presetYesterday"
        preset: DateRanges.Yesterday
        text: qsTr("Yesterday")
    }
    Choice {
        objectName: "presetWeek"
        preset: DateRanges.ThisWeek
        text: qsTr("This week")
    }
    Choice {
        id: days
        objectName: "presetDays"
        readonly property string first: bar.filter.ranges.shortText(bar.filter.firstDay)
        readonly property string last: bar.filter.ranges.shortText(bar.filter.lastDay)
        preset: DateRanges.Days
        text: !checked ? qsTr("Days …")
            : first === last ? first : qsTr("%1 to %2").arg(first).arg(last)
        ToolTip.text: qsTr("Choose days in a calendar; they are days of %1")
            .arg(bar.filter.ranges.timeZone)
        ToolTip.visible: hovered && !calendar.visible
        onClicked: calendar.openAt(bar.filter)
    }

    TimeOfDayBox {
        filter: bar.filter
        finder: bar.finder
    }

    Calendar {
        id: calendar
        parent: days
        y: days.height
        x: Math.min(0, days.width - implicitWidth)
        ranges: bar.filter.ranges
        onChosen: (first, last) => bar.filter.chooseDays(first, last)
    }
}
