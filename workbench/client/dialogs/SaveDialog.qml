import QtQuick
import QtQuick.Controls
import QtQuick.Layouts
import Client.Common

/// Asks for the path of a file. Used in place of the style's file dialog, which loses typed names.
FormDialog {
    id: dialog

    required property string fileTitle
    property bool exists: false ///< the file at the typed path exists
    readonly property alias path: field.text

    /// The handler saves the file and calls finishSave().
    signal saveWanted(string path)

    /// @param problem an error message; an empty text closes the dialog with a notice
    function finishSave(problem) {
        finish(problem);
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
