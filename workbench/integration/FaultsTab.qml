import QtQuick
import QtQuick.Controls
import QtQuick.Layouts
import Client.Common
import Client.Dialogs
import Integration

/// Edits the faults of the stations and the settings of the connected server.
ColumnLayout {
    id: tab

    required property AppState app
    required property WorkbenchContext workbench
    property string file: "" ///< the last saved or loaded file

    spacing: Theme.gap

    ServerBar {
        workbench: tab.workbench
        Layout.fillWidth: true
    }
    Flow {
        spacing: Theme.gap
        Layout.fillWidth: true

        ComboBox {
            objectName: "faultyCommand"
            width: 240
            model: tab.workbench.faults.commands()
            displayText: currentText || qsTr("All commands")
            onActivated: tab.workbench.faults.command = currentText
            Accessible.name: qsTr("Command to which the faults below apply")
        }
        Button {
            objectName: "loadFaults"
            text: qsTr("Load…")
            onClicked: loadDialog.openFor(tab.file)
        }
        Button {
            objectName: "saveFaults"
            text: qsTr("Save…")
            onClicked: saveDialog.openFor(tab.file)
        }
    }
    Row {
        spacing: Theme.gap

        Repeater {
            model: [[qsTr("Connected"), 190], [qsTr("Delay, ms"), 110], [qsTr("Answers come"), 110],
                ["", 70], [qsTr("Failure code"), 90], [qsTr("Results"), 130]]
            Label {
                required property var modelData
                width: modelData[1]
                text: modelData[0]
                color: Theme.faintText
                font.pixelSize: Theme.smallText
            }
        }
    }
    ListView {
        id: list
        objectName: "faultsList"
        model: tab.workbench.faults
        clip: true
        boundsBehavior: Flickable.StopAtBounds
        Accessible.name: qsTr("Faults")
        Layout.fillWidth: true
        Layout.fillHeight: true
        delegate: FaultsRow { }

        ScrollBar.vertical: ScrollBar { }
    }

    Connections {
        target: tab.workbench
        function onAddByOtherClientFailed(relayPath) {
            tab.app.notice(qsTr("%1 did not store the other client's bookmark.").arg(relayPath), true);
        }
    }
    SaveDialog {
        id: saveDialog
        objectName: "saveFaultsDialog"
        app: tab.app
        title: qsTr("Save the faults")
        fileTitle: qsTr("File, for --faults")
        exists: tab.workbench.recorder.exists(path)
        onSaveWanted: path => {
            tab.file = path;
            finishSave(tab.workbench.faults.save(path));
        }
    }
    SaveDialog {
        id: loadDialog
        objectName: "loadFaultsDialog"
        app: tab.app
        title: qsTr("Load faults")
        acceptText: qsTr("Load")
        fileTitle: qsTr("File; its faults replace the current ones")
        onSaveWanted: path => {
            tab.file = path;
            finish(tab.workbench.faults.load(path));
        }
    }
}
