import QtQuick
import QtQuick.Controls
import QtQuick.Layouts

/// A dialog for selected bookmarks. Bookmarks that the filter hides need the user's confirmation.
FormDialog {
    id: dialog

    property var shown: []
    property var hidden: []
    readonly property var records: hiddenToo.checked ? shown.concat(hidden) : shown

    function choose(shownRecords, hiddenRecords) {
        hiddenToo.checked = false;
        shown = shownRecords;
        hidden = hiddenRecords ?? [];
    }

    CheckBox {
        id: hiddenToo
        objectName: "hiddenToo"
        Layout.fillWidth: true
        visible: dialog.hidden.length > 0
        text: dialog.shown.length > 0 ? qsTr("Also %1 that the filter hides").arg(dialog.hidden.length)
            : qsTr("The filter hides all %1; include them").arg(dialog.hidden.length)
    }
}
