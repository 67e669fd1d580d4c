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
