import QtQuick
import Client.Common
import Integration

/// The integrators' drawer beside a developer's QML file.
ThemedWindow {
    id: window

    required property var plugin
    required property WorkbenchContext bench

    width: 1000
    height: 420
    y: Math.max(0, Math.min(760, Screen.desktopAvailableHeight - height)) // below the file's window
    visible: true
    title: qsTr("Integration")

    IntegratorDrawer {
        anchors.fill: parent
        bench: window.bench
        app: AppState {
            plugin: window.plugin
            topology: Topology {}
        }
    }
}
