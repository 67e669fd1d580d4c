import QtQuick
import QtQuick.Controls
import Workbench

Pane {
    id: pane

    required property Client client

    Label {
        text: "TopologyPane " + pane.client.revision
    }
}
