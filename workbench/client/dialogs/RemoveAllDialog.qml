import QtQuick
import QtQuick.Controls
import QtQuick.Layouts

/// Removes all bookmarks of a station after the user has typed its name.
FormDialog {
    id: dialog

    property var station: null
    readonly property string stationName: station ? station.name : ""

    objectName: "removeAllDialog"
    title: qsTr("Remove all bookmarks of %1?").arg(stationName)
    acceptText: qsTr("Remove all")
    gated: true
    valid: station !== null && confirmation.text.trim() === stationName
    firstField: confirmation

    function openFor(wanted) {
        station = wanted;
        confirmation.text = "";
        open();
    }

    onSubmitted: {
        begin(1, [station.relayPath]);
        noteSent(app.bookmarks.removeAllBookmarks(station.relayPath));
    }

    Connections {
        target: dialog.app.plugin
        enabled: dialog.pending > 0
        function onRemoveAllBookmarksResponsed(success) {
            dialog.noteOutcome(success ? "" : qsTr("The station's bookmarks were not removed."));
        }
    }

    Label {
        Layout.fillWidth: true
        wrapMode: Text.Wrap
        textFormat: Text.PlainText
        text: qsTr("This deletes the bookmarks of all cameras of the station, those of other users, too. It "
                   + "can't be undone. Type the station's name, %1, to continue.")
            .arg(dialog.stationName)
    }
    TextField {
        id: confirmation
        objectName: "removeAllConfirmation"
        Layout.fillWidth: true
        placeholderText: dialog.stationName
        Accessible.name: qsTr("The station's name")
    }
}
