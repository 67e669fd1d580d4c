import QtQuick
import QtQuick.Controls
import QtQuick.Layouts
import Client.Common
import Integration

/// The drawer for integrators: traffic or a recording with its differences, log, faults and console.
Pane {
    id: drawer

    required property AppState app
    required property WorkbenchContext workbench

    /// Pairs of a key and its action, for the help.
    readonly property var shortcuts: [
        [qsTr("Up, Down, Home, End"), qsTr("Choose an entry of the traffic or the log")],
        [qsTr("Ctrl+C"), qsTr("Copy the chosen entry's payload as JSON, or the line of the log")],
        [qsTr("Ctrl+Shift+C"), qsTr("Copy the chosen entry as a line of a recording")],
        [qsTr("/"), qsTr("Search in the traffic or the log")],
        [qsTr("Enter, Space"), qsTr("Show a difference in the traffic, unfold those that follow from it")]
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
            Tab { text: qsTr("Differences") }
            Tab { text: qsTr("Console") }
        }
        StackLayout {
            currentIndex: tabs.currentIndex
            Layout.fillWidth: true
            Layout.fillHeight: true

            TrafficTab {
                id: traffic
                app: drawer.app
                workbench: drawer.workbench
                shown: drawer.visible
                onDifferencesWanted: tabs.currentIndex = 3
            }
            LogTab { log: drawer.workbench.log }
            FaultsTab { app: drawer.app; workbench: drawer.workbench }
            DifferencesTab {
                recording: drawer.workbench.openedRecording
                onChosen: line => {
                    tabs.currentIndex = 0;
                    traffic.showLine(line);
                }
            }
            ConsoleTab { plugin: drawer.app.plugin; workbench: drawer.workbench }
        }
    }
}
