import QtQuick
import QtQuick.Controls
import Client.Common

/// A label with its whole text as tooltip if it does not fit.
Label {
    id: label

    property string wholeText: text ///< the tooltip; may be longer than the label's text

    elide: Text.ElideRight
    color: Theme.text

    HoverHandler {
        id: hover
    }
    ToolTip.visible: hover.hovered && (label.truncated || label.text !== label.wholeText)
    ToolTip.delay: 500
    ToolTip.text: wholeText
}
