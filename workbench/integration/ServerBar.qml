import QtQuick
import QtQuick.Controls
import Client.Common
import Integration

/// Edits the settings of the connected server, and simulates another client that adds bookmarks.
Flow {
    id: bar

    required property WorkbenchContext workbench

    /// Adds bookmarks on all cameras in turn, one per minute back from now.
    function addByOther(count) {
        const cameras = [];
        for (const station of workbench.stations)
            cameras.push(...station.cameras);
        for (let i = 0; i < count; ++i) {
            const camera = cameras[i % cameras.length];
            const start = Date.now() - i * 60000;
            workbench.addByOtherClient(camera.relayPath, camera.cameraID, start, start + 30000,
                                          qsTr("Added elsewhere %1").arg(i + 1), "");
        }
    }

    spacing: Theme.gap

    CheckBox {
        id: permission
        objectName: "permission"
        text: qsTr("Settings allowed")
        checked: true
        onToggled: bar.workbench.allowSettings(checked)
        ToolTip.visible: hovered
        ToolTip.delay: 600
        ToolTip.text: qsTr("Permission of the user to change settings; reconnect to apply it")
    }
    TextField {
        objectName: "serverZone"
        width: 150
        text: bar.workbench.serverTimeZone
        onEditingFinished: bar.workbench.serverTimeZone = text
        Accessible.name: qsTr("Time zone of the server")
        ToolTip.visible: hovered
        ToolTip.delay: 600
        ToolTip.text: qsTr("Time zone of the server; reconnect to apply it")
    }
    Button {
        objectName: "reconnect"
        text: qsTr("Reconnect")
        onClicked: bar.workbench.connectToServer()
    }
    Button {
        objectName: "addByOther"
        text: qsTr("Another client adds")
        onClicked: bar.addByOther(count.value)
    }
    SpinBox {
        id: count
        from: 1
        to: 1000
        editable: true
        Accessible.name: qsTr("Number of bookmarks that another client adds")
    }
    Button {
        objectName: "removeFaults"
        text: qsTr("Remove all faults")
        onClicked: bar.workbench.faults.reset()
    }
}
