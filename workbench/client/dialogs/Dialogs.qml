import QtQuick
import Client.Common

/// All dialogs of the window.
Item {
    id: dialogs
    objectName: "dialogs"

    required property Client client

    /// These bookmarks have been deleted.
    signal removed(var records)

    /// Cameras as in client.currentCamera, any number; times in milliseconds since the epoch, or
    /// undefined for the last minute.
    function addFor(cameras, start, end) {
        addDialog.openFor(cameras, start, end);
    }

    /// Display records, at least one: those that the filter shows, and those that it hides.
    function edit(shown, hidden) {
        editDialog.openFor(shown, hidden);
    }

    function remove(shown, hidden) {
        deleteDialog.openFor(shown, hidden);
    }

    /// A station as in client.bench.stations.
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
        client: dialogs.client
    }
    AddDialog {
        id: addDialog
        client: dialogs.client
        known: known
    }
    EditDialog {
        id: editDialog
        client: dialogs.client
        known: known
    }
    DeleteDialog {
        id: deleteDialog
        client: dialogs.client
        onRemoved: records => dialogs.removed(records)
    }
    RemoveAllDialog {
        id: removeAllDialog
        client: dialogs.client
    }
    RecycleDialog {
        id: recycleDialog
        client: dialogs.client
    }
    RecentDialog {
        id: recentDialog
        client: dialogs.client
    }
}
