import QtQuick
import QtQuick.Controls
import QtQuick.Layouts
import Client.Common

/// Asks for a file and saves something in it. The style's own dialog for files loses names that are
/// typed.
FormDialog {
    id: dialog

    required property string fileTitle

    /// To be answered by finish().
    signal saveWanted(string path)

    /// With an error, or an empty text.
    function finish(problem) {
        settle(problem);
        if (problem === "")
            client.notice(qsTr("Saved as %1").arg(path.text), false);
    }

    acceptText: qsTr("Save")
    valid: path.text !== ""
    firstField: path

    function openFor(file) {
        path.text = file;
        open();
    }

    onSubmitted: saveWanted(path.text)

    Label {
        text: dialog.fileTitle
    }
    TextField {
        id: path
        objectName: "savePath"
        selectByMouse: true
        Accessible.name: dialog.fileTitle
        Layout.fillWidth: true
    }
    Label {
        visible: dialog.client.bench.recorder.exists(path.text)
        text: qsTr("The file exists and will be replaced.")
        color: Theme.warning
    }
}
