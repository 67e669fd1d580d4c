import QtQuick
import QtQuick.Controls
import QtQuick.Layouts
import Client.Common
import Client.Dialogs
import Integration

/// What goes wrong: at each station, and at the server to which the client is connected.
ColumnLayout {
    id: tab

    required property AppState app
    required property WorkbenchContext bench
    property string file: "" ///< last saved or loaded

    spacing: Theme.gap

    ServerBar {
        bench: tab.bench
        Layout.fillWidth: true
    }
    Flow {
        spacing: Theme.gap
        Layout.fillWidth: true

        ComboBox {
            objectName: "faultyCommand"
            width: 240
            model: tab.bench.faults.commands()
            displayText: currentText || qsTr("All commands")
            onActivated: tab.bench.faults.command = currentText
            Accessible.name: qsTr("Command with the faults below")
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
                ["", 70], [qsTr("Failing code"), 90], [qsTr("Results"), 130]]
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
        model: tab.bench.faults
        clip: true
        boundsBehavior: Flickable.StopAtBounds
        Accessible.name: qsTr("Faults")
        Layout.fillWidth: true
        Layout.fillHeight: true
        delegate: FaultsRow { }

        ScrollBar.vertical: ScrollBar { }
    }

    SaveDialog {
        id: saveDialog
        objectName: "saveFaultsDialog"
        app: tab.app
        title: qsTr("Save the faults")
        fileTitle: qsTr("File, for --faults")
        exists: tab.bench.recorder.exists(path)
        onSaveWanted: path => {
            tab.file = path;
            finish(tab.bench.faults.save(path));
        }
    }
    SaveDialog {
        id: loadDialog
        objectName: "loadFaultsDialog"
        app: tab.app
        title: qsTr("Load faults")
        acceptText: qsTr("Load")
        fileTitle: qsTr("File, replaces the faults")
        onSaveWanted: path => {
            tab.file = path;
            settle(tab.bench.faults.load(path));
        }
    }
}
