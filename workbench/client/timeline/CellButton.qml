import QtQuick
import QtQuick.Controls
import Client.Common

/// A small button with a symbol and a tooltip.
ToolButton {
    id: button

    required property string hint

    implicitWidth: 24
    implicitHeight: 22
    padding: 0
    focusPolicy: Qt.StrongFocus
    Accessible.name: hint

    ToolTip.visible: hovered || visualFocus
    ToolTip.delay: 500
    ToolTip.text: hint

    FocusFrame {
        shown: button.visualFocus
    }
}
