import QtQuick
import QtQuick.Controls
import Client.Common

/// A label that shows its whole text in a tooltip when there is no room for it.
Label {
    id: label

    property string wholeText: text ///< may be longer than what is meant to be shown

    elide: Text.ElideRight
    color: Theme.text

    HoverHandler {
        id: hover
    }
    ToolTip.visible: hover.hovered && (label.truncated || label.text !== label.wholeText)
    ToolTip.delay: 500
    ToolTip.text: wholeText
}
