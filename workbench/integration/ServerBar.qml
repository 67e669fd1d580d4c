import QtQuick
import QtQuick.Controls
import Client.Common
import Integration

/// What the connected server says, and another client that adds bookmarks.
Flow {
    id: bar

    required property WorkbenchContext bench

    /// One a minute, on the cameras in turn.
    function addByOther(count) {
        const cameras = [];
        for (const station of bench.stations)
            cameras.push(...station.cameras);
        for (let i = 0; i < count; ++i) {
            const camera = cameras[i % cameras.length];
            const start = Date.now() - i * 60000;
            bench.addByOtherClient(camera.relayPath, camera.cameraID, start, start + 30000,
                                          qsTr("Added elsewhere %1").arg(i + 1), "");
        }
    }

    spacing: Theme.gap

    CheckBox {
        id: permission
        objectName: "permission"
        text: qsTr("Settings allowed")
        checked: true
        onToggled: bar.bench.allowSettings(checked)
        ToolTip.visible: hovered
        ToolTip.delay: 600
        ToolTip.text: qsTr("The client hears of it when it connects again")
    }
    TextField {
        objectName: "serverZone"
        width: 150
        text: bar.bench.serverTimeZone
        onEditingFinished: bar.bench.serverTimeZone = text
        Accessible.name: qsTr("Time zone of the server")
        ToolTip.visible: hovered
        ToolTip.delay: 600
        ToolTip.text: qsTr("Time zone of the server; the client hears of it when it connects again")
    }
    Button {
        objectName: "reconnect"
        text: qsTr("Reconnect")
        onClicked: bar.bench.connectToServer()
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
        Accessible.name: qsTr("How many bookmarks another client adds")
    }
    Button {
        objectName: "mend"
        text: qsTr("Mend everything")
        onClicked: bar.bench.faults.reset()
    }
}
