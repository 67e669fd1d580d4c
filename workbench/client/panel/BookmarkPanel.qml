import QtQuick
import QtQuick.Controls
import QtQuick.Layouts
import Client.Common
import Client.Dialogs
import Client.Panel

/// The bookmark panel: filter, pages and actions for the bookmarks of all stations.
Pane {
    id: panel
    objectName: "bookmarkPanel"

    required property AppState app

    readonly property var failedStations: app.failedStations
    readonly property alias filter: filter
    readonly property alias selection: selection
    readonly property alias query: query

    signal addWanted()
    /// Asks to edit or delete bookmarks that the filter shows and bookmarks that it hides.
    signal editWanted(var shown, var hidden)
    signal deleteWanted(var shown, var hidden)

    /// Pairs of a key and its action, for the help.
    readonly property var shortcuts: [
        [qsTr("Esc, Down"), qsTr("Clear the search text, go to the list")],
        [qsTr("Ctrl+PgUp, Ctrl+PgDn"), qsTr("Previous and next page")],
        [qsTr("Ctrl+Home, Ctrl+End"), qsTr("First and last page")],
        [qsTr("Up, Down, PgUp, PgDn, Home, End"), qsTr("Move in the list; with Shift: select")],
        [qsTr("Space, Ctrl+click"), qsTr("Select or deselect a bookmark")],
        [qsTr("Shift+click"), qsTr("Select all up to here, from another page too")],
        [qsTr("Ctrl+A"), qsTr("Select the whole page as well")],
        [qsTr("Enter, double-click"), qsTr("Show the bookmark in a view cell")],
        [qsTr("F2"), qsTr("Edit the selected bookmarks")],
        [qsTr("Del"), qsTr("Delete the selected bookmarks")],
        [qsTr("Esc"), qsTr("Select nothing")]
    ]

    function focusSearch() {
        search.focusSearch();
    }

    function saveState() {
        return filter.saveState();
    }

    function restoreState(state) {
        filter.restoreState(state);
    }

    padding: Theme.margin

    BookmarkFilter {
        id: filter
        app: panel.app
    }
    RecordSelection {
        id: selection
    }
    PageModel {
        id: page
        selection: selection
    }

    PageQuery {
        id: query
        app: panel.app
        filter: filter
        model: page
        onTurned: anew => list.turn(query.pageNumber, anew)
    }

    CsvExport {
        id: csv
    }
    SaveDialog {
        id: exportDialog
        objectName: "exportDialog"
        app: panel.app
        title: qsTr("Export %L1 bookmarks").arg(query.total)
        fileTitle: qsTr("File, as CSV for --import")
        exists: csv.exists(path)
        onSaveWanted: path => finishSave(csv.save(path, query.found.finder, filter.pageWanted(0)))
    }

    ColumnLayout {
        anchors.fill: parent
        spacing: Theme.gap

        SearchBar {
            id: search
            Layout.fillWidth: true
            filter: filter
            onAddWanted: panel.addWanted()
            onFinished: list.forceActiveFocus(Qt.TabFocusReason)
        }
        DateBar {
            Layout.fillWidth: true
            filter: filter
            finder: query.found.finder
        }
        OrderBar {
            Layout.fillWidth: true
            app: panel.app
            filter: filter
            onExportWanted: exportDialog.openFor(csv.newFile())
        }
        BookmarkList {
            id: list
            objectName: "bookmarkList"
            Layout.fillWidth: true
            Layout.fillHeight: true
            query: query
            selection: selection
            byDate: filter.groupKey === "displayDate"
            onShowWanted: record => panel.app.bookmarkWanted(record)
            onEditWanted: records => panel.editWanted(...query.found.shownAndHidden(records))
            onDeleteWanted: records => panel.deleteWanted(...query.found.shownAndHidden(records))

            EmptyState {
                anchors.centerIn: parent
                width: parent.width - 2 * Theme.margin
                visible: query.total === 0
                app: panel.app
                filter: filter
                anyBookmarks: query.anyBookmarks
                failedStations: panel.failedStations
            }
        }
        // Below the list: a bar above it would move the rows between the clicks of a double-click.
        SelectionBar {
            Layout.fillWidth: true
            visible: selection.count > 0
            app: panel.app
            selection: selection
            onEditWanted: records => panel.editWanted(...query.found.shownAndHidden(records))
            onDeleteWanted: records => panel.deleteWanted(...query.found.shownAndHidden(records))
        }
        QueryProgress {
            Layout.fillWidth: true
            app: panel.app
            failedStations: panel.failedStations
        }
        PageBar {
            Layout.fillWidth: true
            query: query
        }
    }
}
