import QtQuick
import QtQuick.Controls
import Client.Common
import Client.Dialogs
import Client.Panel
import Client.Timeline
import Client.Topology
import Integration

/// The main window: topology, view cells and bookmark panel side by side, the integrators' drawer
/// below.
ThemedWindow {
    id: window

    required property var plugin
    required property WorkbenchContext workbench
    /// Restores the window's state at the start and saves it at the end.
    property bool remembers: true
    /// The largest size at the start: the screen's, unless the platform has none.
    property size room: Qt.platform.pluginName === "offscreen" ? Qt.size(1e6, 1e6)
        : Qt.size(Screen.desktopAvailableWidth, Screen.desktopAvailableHeight)

    width: 1440
    height: 860
    minimumWidth: 1024
    minimumHeight: 640
    visible: true
    title: qsTr("Tessaline workbench")

    AppState {
        id: app
        plugin: window.plugin
        topology: Topology {
            stations: window.workbench.stations
            stationStates: window.workbench.stationStates
        }
        timeZone: window.workbench.clientTimeZone
        settingAllowed: window.workbench.settingPermission
        failedStations: window.workbench.failedStations
        onNotice: (text, failure) => notice.show(text, failure)
    }
    ResultNotifier {
        app: app
    }

    header: WindowBar {
        app: app
        drawerOpen: drawer.visible
        onAddWanted: window.addBookmark()
        onDrawerToggled: window.toggleDrawer()
        onHelpWanted: help.open()
    }

    SplitView {
        id: rows
        anchors.fill: parent
        orientation: Qt.Vertical

        SplitView {
            id: columns
            SplitView.fillHeight: true
            SplitView.minimumHeight: 260

            TopologyPane {
                id: topology
                app: app
                onRemoveAllWanted: station => dialogs.removeAllOf(station)
                onRecentWanted: station => dialogs.recentOf(station)
                onRecycleWanted: dialogs.recycle()
                SplitView.preferredWidth: 220
                SplitView.minimumWidth: 160
            }
            CellGrid {
                id: cells
                app: app
                onRangeMarked: (camera, start, end) => dialogs.addFor([camera], start, end)
                SplitView.fillWidth: true
                SplitView.minimumWidth: 360
            }
            BookmarkPanel {
                id: panel
                objectName: "bookmarkPanel"
                app: app
                onAddWanted: window.addBookmark()
                onEditWanted: (shown, hidden) => dialogs.edit(shown, hidden)
                onDeleteWanted: (shown, hidden) => dialogs.remove(shown, hidden)
                SplitView.preferredWidth: 420
                SplitView.minimumWidth: 340
            }
        }
        IntegratorDrawer {
            id: drawer
            app: app
            workbench: window.workbench
            visible: false
            SplitView.preferredHeight: 300
            SplitView.minimumHeight: 140
        }
    }

    Dialogs {
        id: dialogs
        app: app
        onRemoved: records => panel.selection.remove(records)
    }

    Notice {
        id: notice
        anchors { bottom: parent.bottom; horizontalCenter: parent.horizontalCenter; margins: 20 }
    }

    WindowShortcuts {
        id: shortcuts
        onAddWanted: window.addBookmark()
        onRefreshWanted: app.refresh()
        onSearchWanted: panel.focusSearch()
        onDrawerToggled: window.toggleDrawer()
        onHelpWanted: help.open()
        onTreeWanted: topology.focusFilter()
        onCellsWanted: cells.activeCell.forceActiveFocus(Qt.ShortcutFocusReason)
    }

    HelpOverlay {
        id: help
        objectName: "help"
        sections: [
            { title: qsTr("Window"), keys: shortcuts.texts },
            { title: qsTr("Cameras"), keys: topology.shortcuts },
            { title: qsTr("View cells"), keys: cells.shortcuts },
            { title: qsTr("Bookmarks"), keys: panel.shortcuts },
            { title: qsTr("Integration"), keys: drawer.shortcuts }
        ]
    }

    WindowMemory {
        id: memory
        window: window
        room: window.room
        cells: cells
        panel: panel
        drawer: drawer
        splits: [columns, rows]
    }

    function addBookmark() {
        const cell = cells.activeCell;
        if (cell.occupied)
            dialogs.addFor([cell.camera], ...cell.head.rangeForNew());
        else
            dialogs.addFor(app.currentCamera ? [app.currentCamera] : []);
    }

    function toggleDrawer() {
        drawer.visible = !drawer.visible;
        if (drawer.visible)
            drawer.focusTabs();
    }

    onClosing: {
        if (remembers)
            memory.save();
    }

    Component.onCompleted: {
        if (remembers)
            memory.restore();
        if (workbench.openedRecording.file !== "") // by --replay
            drawer.visible = true;
        workbench.connectToServer();
        app.refresh();
    }
}
