import QtQuick
import QtQuick.Controls
import Client.Common
import Client.Panel

/// Selects the time of day in which bookmarks begin, from a list or by typing.
ComboBox {
    id: box

    required property BookmarkFilter filter
    required property RecordFinder finder

    readonly property string anyTime: qsTr("Any time")
    readonly property string typed: editText === anyTime ? "" : editText.trim()
    readonly property bool valid: finder.isTimeOfDay(typed)

    function apply() {
        if (valid)
            filter.timeOfDay = typed;
    }

    objectName: "timeOfDay"
    implicitWidth: 108
    editable: true
    selectTextByMouse: true
    model: [anyTime, "22:00-06:00", "06:00-22:00"]
    palette.text: valid ? Theme.text : Theme.failure
    Accessible.name: qsTr("Time of day")
    Accessible.description: ToolTip.text
    ToolTip.text: valid ? qsTr("Time of day at which bookmarks begin, like 22:00-06:00, in the server's zone")
                        : qsTr("This is not a time of day. Type it as 22:00-06:00.")
    ToolTip.visible: hovered && !popup.visible
    onActivated: apply()
    onAccepted: apply()
    onActiveFocusChanged: if (!activeFocus) apply()

    function show() {
        editText = filter.timeOfDay || anyTime;
    }

    Component.onCompleted: show()
    Connections {
        target: box.filter
        function onTimeOfDayChanged() {
            box.show();
        }
    }
}
