import QtQuick
import QtQuick.Controls
import Client.Common

/// A cell of a row of the traffic or the log.
Label {
    required property ItemDelegate row
    property bool mono: false
    property bool alarming: false

    height: row.height
    verticalAlignment: Text.AlignVCenter
    color: row.highlighted ? Theme.accentText : alarming ? Theme.failure : Theme.text
    font.family: mono ? "monospace" : row.font.family
    font.pixelSize: Theme.smallText
    elide: Text.ElideRight
    textFormat: Text.PlainText

    ToolTip.visible: hover.hovered && truncated
    ToolTip.delay: 600
    ToolTip.text: text

    HoverHandler { id: hover }
}
