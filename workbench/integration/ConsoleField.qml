import QtQuick
import QtQuick.Controls
import QtQuick.Layouts
import Client.Common

/// Edits one argument of a call.
RowLayout {
    id: field

    required property int index
    required property var modelData ///< the parameter: a map of name and type
    property string text: ""        ///< the initial text
    property bool wrong: false      ///< the last call rejected the text
    readonly property bool isBool: modelData.type === "bool"
    readonly property string typed: isBool ? String(box.checked) : line.text

    signal accepted()
    signal editorFocused()

    function focusEditor() {
        if (isBool)
            box.forceActiveFocus(Qt.TabFocusReason);
        else
            line.forceActiveFocus(Qt.TabFocusReason);
    }

    Label {
        text: field.modelData.name
        color: field.wrong ? Theme.failure : Theme.text
        leftPadding: Theme.gap
        elide: Text.ElideRight
        Layout.preferredWidth: 110
    }
    TextField {
        id: line
        objectName: "argument " + field.modelData.name
        visible: !field.isBool
        text: field.text
        placeholderText: field.modelData.type
        selectByMouse: true
        Accessible.name: field.modelData.name
        onAccepted: field.accepted()
        onActiveFocusChanged: if (activeFocus) field.editorFocused()
        Layout.fillWidth: true
    }
    CheckBox {
        id: box
        objectName: line.objectName
        visible: field.isBool
        checked: field.text === "true"
        text: field.typed
        Accessible.name: field.modelData.name
        Keys.onReturnPressed: field.accepted()
        onActiveFocusChanged: if (activeFocus) field.editorFocused()
        Layout.fillWidth: true
    }
}
