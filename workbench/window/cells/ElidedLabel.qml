import QtQuick
import QtQuick.Controls
import Workbench

/// A label that shows its whole text in a tooltip when there is no room for it.
Label {
    id: label

    elide: Text.ElideRight
    color: Theme.text

    HoverHandler {
        id: hover
    }
    ToolTip.visible: hover.hovered && label.truncated
    ToolTip.delay: 500
    ToolTip.text: text
}
