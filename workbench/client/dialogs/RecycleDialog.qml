import QtQuick
import QtQuick.Controls
import QtQuick.Layouts
import Client.Common

/// Edits the recycle setting, that is, how long the stations keep bookmarks.
FormDialog {
    id: dialog

    property bool known: false ///< the server has returned its setting
    readonly property int total: days.value * 24 + hours.value ///< hours

    objectName: "recycleDialog"
    title: qsTr("Recycle settings")
    acceptText: qsTr("Save")
    timeoutSeconds: 8 // a rejected command has no signal
    valid: known && (total > 0 || !enableBox.checked)

    function openSetting() {
        known = false;
        open();
        ask();
    }

    function ask() {
        if (pending > 0)
            return; // onPendingChanged calls it again
        begin(1, []);
        app.bookmarks.getRecycleSetting();
    }

    onPendingChanged: {
        if (visible && !known && !busy)
            ask();
    }

    onSubmitted: {
        begin(1, []);
        app.bookmarks.updateRecycleSetting(total, enableBox.checked);
    }

    Connections {
        target: dialog.app.plugin
        enabled: dialog.pending > 0
        function onGetRecycleSettingResponse(reserveHour, enableRecycle) {
            if (!dialog.noteSignal())
                return;
            days.value = Math.floor(reserveHour / 24);
            hours.value = reserveHour % 24;
            enableBox.checked = enableRecycle;
            dialog.known = true;
            dialog.busy = false;
            enableBox.forceActiveFocus(Qt.TabFocusReason);
        }
        function onUpdateRecycleSettingResponse(success) {
            dialog.noteOutcome(success ? "" : qsTr("The setting was not changed."));
        }
    }

    CheckBox {
        id: enableBox
        objectName: "recycleEnabled"
        enabled: dialog.known
        text: qsTr("Delete old bookmarks")
    }
    RowLayout {
        enabled: dialog.known
        spacing: Theme.gap

        Label {
            text: qsTr("Kept for")
        }
        SpinBox {
            id: days
            objectName: "recycleDays"
            to: 99999
            editable: true
            Accessible.name: qsTr("Days")
        }
        Label {
            text: qsTr("days and")
        }
        SpinBox {
            id: hours
            objectName: "recycleHours"
            to: 23
            editable: true
            Accessible.name: qsTr("Hours")
        }
        Label {
            text: qsTr("hours")
        }
    }
    Label {
        Layout.fillWidth: true
        visible: dialog.known
        wrapMode: Text.Wrap
        color: Theme.faintText
        text: dialog.valid ? qsTr("%1 hours in all").arg(dialog.total)
                           : qsTr("At least one hour")
    }
}
