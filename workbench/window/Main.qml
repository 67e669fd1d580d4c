import QtQuick
import QtQuick.Controls
import Workbench

/// The window: topology, view cells and bookmark panel side by side, the integrators' drawer below.
ApplicationWindow {
    id: window

    required property var plugin
    required property Bench bench

    width: 1440
    height: 860
    minimumWidth: 1024
    minimumHeight: 640
    visible: true
    title: qsTr("Tessaline workbench")
    palette: Theme.palette
    color: Theme.window
    font.pixelSize: Theme.normalText

    Client {
        id: client
        plugin: window.plugin
        bench: window.bench
    }

    SplitView {
        anchors.fill: parent

        TopologyPane {
            client: client
            SplitView.preferredWidth: 220
            SplitView.minimumWidth: 160
        }
        SplitView {
            orientation: Qt.Vertical
            SplitView.fillWidth: true
            SplitView.minimumWidth: 360

            CellGrid {
                client: client
                SplitView.fillHeight: true
                SplitView.minimumHeight: 240
            }
            IntegratorDrawer {
                client: client
                visible: false
                SplitView.preferredHeight: 280
                SplitView.minimumHeight: 140
            }
        }
        BookmarkPanel {
            client: client
            SplitView.preferredWidth: 460
            SplitView.minimumWidth: 340
        }
    }

    Component.onCompleted: {
        bench.connectToServer();
        client.refresh();
    }
}
