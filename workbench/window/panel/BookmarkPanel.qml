import QtQuick
import QtQuick.Controls
import QtQuick.Layouts
import Workbench

/// The search over the bookmarks of all stations: filter, pages, and what is done with the
/// bookmarks found.
Pane {
    id: panel

    required property Client client

    readonly property var failedStations: client.failedStations
    readonly property alias filter: filter
    readonly property alias selection: selection
    readonly property alias query: query

    signal addWanted()
    signal editWanted(var records)
    signal deleteWanted(var records)

    /// Keys and what they do, for the help.
    readonly property list<QtObject> shortcuts: [
        ShortcutText { keys: qsTr("Esc, Down"); what: qsTr("clear the search text, go to the list") },
        ShortcutText { keys: qsTr("Ctrl+PgUp, Ctrl+PgDn"); what: qsTr("previous and next page") },
        ShortcutText { keys: qsTr("Ctrl+Home, Ctrl+End"); what: qsTr("first and last page") },
        ShortcutText { keys: qsTr("Up, Down, PgUp, PgDn, Home, End"); what: qsTr("move in the list; with Shift: select") },
        ShortcutText { keys: qsTr("Space, Ctrl+click"); what: qsTr("select or deselect a bookmark") },
        ShortcutText { keys: qsTr("Ctrl+A"); what: qsTr("select the whole page as well") },
        ShortcutText { keys: qsTr("Enter, double-click"); what: qsTr("show the bookmark in a view cell") },
        ShortcutText { keys: qsTr("F2"); what: qsTr("edit the selected bookmarks") },
        ShortcutText { keys: qsTr("Del"); what: qsTr("delete the selected bookmarks") },
        ShortcutText { keys: qsTr("Esc"); what: qsTr("select nothing") }
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
        client: panel.client
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
        client: panel.client
        filter: filter
        model: page
        onTurned: {
            list.currentIndex = 0;
            list.anchor = 0;
            list.positionViewAtBeginning();
        }
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
        }
        OrderBar {
            Layout.fillWidth: true
            client: panel.client
            filter: filter
        }
        SelectionBar {
            Layout.fillWidth: true
            visible: selection.count > 0
            client: panel.client
            selection: selection
            onEditWanted: records => panel.editWanted(records)
            onDeleteWanted: records => panel.deleteWanted(records)
        }
        BookmarkList {
            id: list
            objectName: "bookmarkList"
            Layout.fillWidth: true
            Layout.fillHeight: true
            page: page
            selection: selection
            byDate: filter.groupKey === "displayDate"
            onShowWanted: record => panel.client.bookmarkWanted(record)
            onEditWanted: records => panel.editWanted(records)
            onDeleteWanted: records => panel.deleteWanted(records)

            EmptyState {
                anchors.centerIn: parent
                width: parent.width - 2 * Theme.margin
                visible: query.total === 0
                client: panel.client
                filter: filter
                anyBookmarks: query.anyBookmarks
                failedStations: panel.failedStations
            }
        }
        QueryProgress {
            Layout.fillWidth: true
            client: panel.client
            failedStations: panel.failedStations
        }
        PageBar {
            Layout.fillWidth: true
            query: query
        }
    }
}
