import QtQuick
import QtQuick.Controls
import QtQuick.Layouts
import Client.Common

/// Shows bookmarks and deletes them after a confirmation.
SelectionDialog {
    id: dialog

    readonly property int named: 5

    /// These bookmarks were deleted.
    signal removed(var records)

    objectName: "deleteDialog"
    title: records.length === 0 ? qsTr("Delete bookmarks?")
        : records.length === 1 ? qsTr("Delete this bookmark?")
        : qsTr("Delete %1 bookmarks?").arg(records.length)
    acceptText: qsTr("Delete")
    gated: true
    valid: records.length > 0
    firstField: list

    function openFor(shownRecords, hiddenRecords) {
        choose(shownRecords, hiddenRecords);
        open();
    }

    function lines() {
        return records.slice(0, named).map(record => qsTr("%1  %2  %3").arg(record.displayDateTime)
            .arg(record.cameraName).arg(record.description || qsTr("(no text)"))).join("\n");
    }

    /// Keeps the bookmarks that were not deleted in the dialog.
    function keep(left) {
        const count = records.length;
        removed(records.filter(record => !left.includes(record)));
        if (left.length > 0)
            choose(left);
        finish(left.length === 0 ? "" : qsTr("%1 of %2 were not deleted. Try again or check the station.").arg(left.length)
            .arg(count));
    }

    onSubmitted: {
        begin(1, records.map(record => record.relayPath));
        if (records.length === 1) {
            noteSent(app.bookmarks.deleteBookmark(records[0].bookmarkID, records[0].relayPath));
        } else {
            app.deletedTogether = records.length;
            noteSent(app.bookmarks.deleteBookmarks(records.map(record => ({
                        BookmarkID: record.bookmarkID,
                        relayPath: record.relayPath
                    }))));
        }
    }

    Connections {
        target: dialog.app.plugin
        enabled: dialog.pending > 0
        function onDeleteBookmarkResponsed(success) {
            if (dialog.noteSignal())
                dialog.keep(success ? [] : dialog.records);
        }
        function onDeleteBookmarksResponsed(failBookmarkIdList) {
            const failed = new Set(failBookmarkIdList);
            if (dialog.noteSignal())
                dialog.keep(dialog.records.filter(record => failed.has(record.bookmarkID)));
        }
    }

    Label {
        id: list
        objectName: "deleteList"
        Layout.fillWidth: true
        wrapMode: Text.Wrap
        textFormat: Text.PlainText
        text: dialog.lines()
    }
    Label {
        visible: dialog.records.length > dialog.named
        color: Theme.faintText
        text: qsTr("and %1 more").arg(dialog.records.length - dialog.named)
    }
}
