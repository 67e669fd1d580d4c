import QtQuick
import Client.Common

/// All dialogs of the window.
Item {
    id: dialogs
    objectName: "dialogs"

    required property AppState app

    /// These bookmarks were deleted.
    signal removed(var records)

    /// Opens the dialog to add a bookmark.
    /// @param cameras   maps as in AppState.currentCamera
    /// @param start,end milliseconds since the epoch, or undefined for the last minute
    function addFor(cameras, start, end) {
        addDialog.openFor(cameras, start, end);
    }

    /// Opens the dialog to edit display records, at least one.
    /// @param shown,hidden the records that the filter shows and hides
    function edit(shown, hidden) {
        editDialog.openFor(shown, hidden);
    }

    function remove(shown, hidden) {
        deleteDialog.openFor(shown, hidden);
    }

    /// @param station a map as in Topology.stations
    function removeAllOf(station) {
        removeAllDialog.openFor(station);
    }

    function recycle() {
        recycleDialog.openSetting();
    }

    function recentOf(station) {
        recentDialog.openFor(station);
    }

    KnownGroups {
        id: known
        app: dialogs.app
    }
    AddDialog {
        id: addDialog
        app: dialogs.app
        known: known
    }
    EditDialog {
        id: editDialog
        app: dialogs.app
        known: known
    }
    DeleteDialog {
        id: deleteDialog
        app: dialogs.app
        onRemoved: records => dialogs.removed(records)
    }
    RemoveAllDialog {
        id: removeAllDialog
        app: dialogs.app
    }
    RecycleDialog {
        id: recycleDialog
        app: dialogs.app
    }
    RecentDialog {
        id: recentDialog
        app: dialogs.app
    }
}
