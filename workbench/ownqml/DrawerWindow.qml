import QtQuick
import Client.Common
import Integration

/// A window with the integrators' drawer, for a developer's QML file.
ThemedWindow {
    id: window

    required property var plugin
    required property WorkbenchContext workbench

    width: 1000
    height: 420
    y: Math.max(0, Math.min(760, Screen.desktopAvailableHeight - height)) // below the file's window
    visible: true
    title: qsTr("Integration")

    IntegratorDrawer {
        anchors.fill: parent
        workbench: window.workbench
        app: AppState {
            plugin: window.plugin
            topology: Topology {}
        }
    }
}
