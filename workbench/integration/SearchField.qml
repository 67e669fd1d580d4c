import QtQuick
import QtQuick.Controls

/// Where a search text is typed. The search follows when the typing pauses.
TextField {
    id: field

    property string settledText: ""
    property string hint: ""

    selectByMouse: true
    Accessible.name: placeholderText
    ToolTip.visible: hovered && hint !== ""
    ToolTip.delay: 600
    ToolTip.text: hint

    onTextChanged: pause.restart()
    onAccepted: settledText = text
    Keys.onEscapePressed: clear()

    Timer {
        id: pause
        interval: 200
        onTriggered: field.settledText = field.text
    }
}
