import QtQuick
import Client.Common

/// All dialogs of the window.
Item {
    id: dialogs
    objectName: "dialogs"

    required property AppState app

    /// These bookmarks have been deleted.
    signal removed(var records)

    /// Cameras as in app.currentCamera, any number; times in milliseconds since the epoch, or
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

    /// A station as in the topology.
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
