import QtQuick
import QtQuick.Controls

/// Edits a search text. appliedText follows when the user stops typing.
TextField {
    id: field

    property string appliedText: ""
    property string hint: ""

    function cancel() {
        clear();
    }

    selectByMouse: true
    Accessible.name: placeholderText
    ToolTip.visible: hovered && hint !== ""
    ToolTip.delay: 600
    ToolTip.text: hint

    onTextChanged: pause.restart()
    onAccepted: appliedText = text
    Keys.onEscapePressed: cancel()

    Timer {
        id: pause
        interval: 200
        onTriggered: field.appliedText = field.text
    }
}
