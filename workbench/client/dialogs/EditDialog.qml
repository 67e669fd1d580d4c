import QtQuick
import QtQuick.Controls
import QtQuick.Layouts

/// Changes description, group or both of one or several bookmarks.
SelectionDialog {
    id: dialog

    required property KnownGroups known

    property int failed: 0
    readonly property bool many: records.length > 1

    objectName: "editDialog"
    title: many ? qsTr("Edit %1 bookmarks").arg(records.length) : qsTr("Edit bookmark")
    acceptText: qsTr("Save")
    valid: records.length > 0 && (changeText.checked || changeGroup.checked)
    firstField: description

    function openFor(shownRecords, hiddenRecords) {
        choose(shownRecords, hiddenRecords);
        const only = records.length === 1 ? records[0] : null;
        description.text = only ? only.description : "";
        group.begin(only ? only.group : "");
        changeText.checked = false;
        changeGroup.checked = false;
        open();
    }

    // In Qt 6.4 an empty literal arrives as a null text, which means no change; trim() returns an
    // empty text.
    function wantedText(change, text) {
        return !change ? undefined : text === "" ? " ".trim() : text;
    }

    onSubmitted: {
        const text = wantedText(changeText.checked, description.text);
        const groupText = wantedText(changeGroup.checked, group.editText);
        failed = 0;
        begin(records.length, records.map(record => record.relayPath));
        for (const record of records) {
            if (!app.bookmarks.updateBookmark(record.bookmarkID, text, groupText))
                count(false);
        }
    }

    function count(success) {
        failed += success ? 0 : 1;
        if (!noteSignal() || pending > 0)
            return;
        finish(failed === 0 ? "" : many ? qsTr("%1 of %2 were not changed.").arg(failed)
            .arg(records.length) : qsTr("The bookmark was not changed."));
    }

    Connections {
        target: dialog.app.plugin
        enabled: dialog.pending > 0
        function onUpdateBookmarkResponsed(success) {
            dialog.count(success);
        }
    }

    CheckBox {
        id: changeText
        objectName: "changeText"
        text: qsTr("Change the description")
    }
    TextField {
        id: description
        objectName: "editDescription"
        Layout.fillWidth: true
        selectByMouse: true
        placeholderText: changeText.checked ? qsTr("(empty)") : qsTr("(no change)")
        Accessible.name: qsTr("Description")
        onTextEdited: changeText.checked = true
    }
    CheckBox {
        id: changeGroup
        objectName: "changeGroup"
        text: qsTr("Change the group")
    }
    GroupField {
        id: group
        objectName: "editGroup"
        Layout.fillWidth: true
        known: dialog.known
        onTouchedChanged: if (touched) changeGroup.checked = true
        onAccepted: dialog.submit()
    }
}
