import QtQuick
import QtQuick.Controls

/// A button of the bar at the top, with a hint.
ToolButton {
    required property string hint

    activeFocusOnTab: true
    Accessible.description: hint
    ToolTip.visible: hovered || visualFocus
    ToolTip.delay: 600
    ToolTip.text: hint
}
