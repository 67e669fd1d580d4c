import QtQuick
import QtQuick.Controls
import Client.Common

/// A button for an action that the server may forbid. A frame around the button shows the reason,
/// because a disabled control shows no tooltip.
Item {
    id: frame

    required property AppState app
    property string text: ""
    property string hint: "" ///< tooltip while the action is allowed

    signal clicked()

    implicitWidth: button.implicitWidth
    implicitHeight: button.implicitHeight

    ToolButton {
        id: button
        anchors.fill: parent
        enabled: frame.app.settingAllowed
        focusPolicy: Qt.StrongFocus
        text: enabled ? frame.text : qsTr("%1 (locked)").arg(frame.text)
        Accessible.description: frame.app.lockReason
        onClicked: frame.clicked()
    }
    HoverHandler {
        id: hover
    }
    ToolTip.text: frame.app.lockReason || frame.hint
    ToolTip.visible: hover.hovered && ToolTip.text !== ""
}
