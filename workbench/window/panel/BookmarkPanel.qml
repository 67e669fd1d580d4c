import QtQuick
import QtQuick.Controls
import Workbench

Pane {
    id: pane

    required property Client client

    Label {
        text: "BookmarkPanel " + pane.client.revision
    }

    function saveState() {
        return {};
    }

    function restoreState(state) {
    }
}
