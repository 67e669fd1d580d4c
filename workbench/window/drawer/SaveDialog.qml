import QtQuick
import QtQuick.Controls
import QtQuick.Layouts
import Workbench

/// Saves the traffic for a replay. The style's own dialog for files loses names that are typed.
FormDialog {
    id: dialog

    readonly property Recorder recorder: client.bench.recorder

    objectName: "saveDialog"
    title: qsTr("Save the traffic")
    acceptText: qsTr("Save")
    valid: path.text !== ""
    firstField: path

    function openNew() {
        path.text = recorder.newFile();
        open();
    }

    onSubmitted: {
        settle(recorder.save(path.text));
        if (error === "")
            client.notice(qsTr("Saved as %1").arg(path.text), false);
    }

    Label {
        text: qsTr("File, as JSON lines for --replay")
    }
    TextField {
        id: path
        objectName: "savePath"
        selectByMouse: true
        Accessible.name: qsTr("File")
        Layout.fillWidth: true
    }
    Label {
        visible: dialog.recorder.exists(path.text)
        text: qsTr("The file exists and will be replaced.")
        color: Theme.warning
    }
}
