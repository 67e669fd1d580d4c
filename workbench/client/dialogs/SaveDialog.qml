import QtQuick
import QtQuick.Controls
import QtQuick.Layouts
import Client.Common

/// Asks for a file and saves something in it. The style's own dialog for files loses names that are
/// typed.
FormDialog {
    id: dialog

    required property string fileTitle
    property bool exists: false ///< the file whose path has been typed
    readonly property alias path: field.text

    /// To be answered by finish().
    signal saveWanted(string path)

    /// With an error, or an empty text.
    function finish(problem) {
        settle(problem);
        if (problem === "")
            app.notice(qsTr("Saved as %1").arg(path), false);
    }

    acceptText: qsTr("Save")
    valid: path !== ""
    firstField: field

    function openFor(file) {
        field.text = ""; // the file may exist by now, so exists has to be evaluated again
        field.text = file;
        open();
    }

    onSubmitted: saveWanted(path)

    Label {
        text: dialog.fileTitle
    }
    TextField {
        id: field
        objectName: "savePath"
        selectByMouse: true
        Accessible.name: dialog.fileTitle
        Layout.fillWidth: true
    }
    Label {
        visible: dialog.exists
        text: qsTr("The file exists and will be replaced.")
        color: Theme.warning
    }
}
