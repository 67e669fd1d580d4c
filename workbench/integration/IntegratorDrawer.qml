import QtQuick
import QtQuick.Controls
import QtQuick.Layouts
import Client.Common

/// For integrators: what passes between QML, plug-in and host, the log, and faults of the stations.
Pane {
    id: drawer

    required property Client client

    /// Keys and what they do, for the help.
    readonly property var shortcuts: [
        [qsTr("Up, Down, Home, End"), qsTr("Choose an entry of the traffic or the log")],
        [qsTr("Ctrl+C"), qsTr("Copy the chosen entry's payload as JSON, or the line of the log")],
        [qsTr("/"), qsTr("Search in the traffic or the log")]
    ]

    padding: Theme.gap

    function focusTabs() {
        tabs.currentItem.forceActiveFocus(Qt.ShortcutFocusReason);
    }

    component Tab: TabButton {
        id: tab
        width: implicitWidth
        FocusFrame { shown: tab.activeFocus }
    }

    ColumnLayout {
        anchors.fill: parent
        spacing: Theme.gap

        TabBar {
            id: tabs
            objectName: "drawerTabs"
            Layout.fillWidth: true

            Tab { text: qsTr("Traffic") }
            Tab { text: qsTr("Log") }
            Tab { text: qsTr("Faults") }
            Tab { text: qsTr("Replay") }
        }
        StackLayout {
            currentIndex: tabs.currentIndex
            Layout.fillWidth: true
            Layout.fillHeight: true

            TrafficTab { client: drawer.client; shown: drawer.visible }
            LogTab { log: drawer.client.bench.log }
            FaultsTab { client: drawer.client }
            ReplayTab { report: drawer.client.bench.replayReport }
        }
    }
}
