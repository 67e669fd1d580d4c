import QtQuick
import QtQuick.Controls
import QtQuick.Layouts
import Client.Common

/// Shows the stations and cameras of the topology as a tree, with a filter.
Pane {
    id: pane

    required property AppState app

    /// Chosen in a station's menu; a station is a map as in Topology.stations.
    signal removeAllWanted(var station)
    signal recentWanted(var station)
    signal recycleWanted

    readonly property var shortcuts: [
        [qsTr("Up, Down"), qsTr("Next row of the tree")],
        [qsTr("Left, Right"), qsTr("Fold, unfold a station")],
        [qsTr("Space"), qsTr("Show a camera's bookmarks in the panel")],
        [qsTr("Enter"), qsTr("Put a camera into a view cell")],
        [qsTr("Menu, Shift+F10"), qsTr("Actions of a station")]
    ]

    padding: Theme.margin

    function focusFilter() {
        filterField.forceActiveFocus(Qt.ShortcutFocusReason);
    }

    ColumnLayout {
        anchors.fill: parent
        spacing: Theme.gap

        RowLayout {
            Label {
                text: qsTr("Cameras")
                font { bold: true; pixelSize: Theme.largeText }
                Layout.fillWidth: true
            }
            Label {
                text: qsTr("%L1 stations").arg(pane.app.topology.stations.length)
                color: Theme.faintText
                font.pixelSize: Theme.smallText
            }
        }
        TextField {
            id: filterField
            objectName: "topologyFilter"
            placeholderText: qsTr("Find a camera or station")
            selectByMouse: true
            Accessible.name: placeholderText
            Layout.fillWidth: true
            Keys.onDownPressed: tree.forceActiveFocus(Qt.TabFocusReason)
            Keys.onEscapePressed: clear()
        }
        TopologyTree {
            id: tree
            objectName: "topologyTree"
            app: pane.app
            filter: filterField.text
            Layout.fillWidth: true
            Layout.fillHeight: true
            onMenuWanted: (station, row) => stationMenu.openFor(station, row)
        }
        Label {
            visible: tree.count === 0
            text: filterField.text === "" ? qsTr("The topology is empty.")
                                          : qsTr("No camera or station has such a name.")
            color: Theme.faintText
            wrapMode: Text.Wrap
            Layout.fillWidth: true
        }
    }

    StationMenu {
        id: stationMenu
        app: pane.app
        onRecentWanted: station => pane.recentWanted(station)
        onRemoveAllWanted: station => pane.removeAllWanted(station)
        onRecycleWanted: pane.recycleWanted()
    }
}
