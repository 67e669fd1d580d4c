import QtQuick
import QtQuick.Controls
import QtQuick.Templates as T
import Client.Common

/// Sets the width of the tooltip that all controls share to its longest line, up to a limit. Qt's
/// default is the width of all lines in a row.
Text {
    id: longestLine

    readonly property T.ToolTip tip: ToolTip.toolTip

    visible: false
    text: tip.text
    font: tip.font

    Binding {
        target: longestLine.tip
        property: "contentWidth"
        value: Math.min(longestLine.implicitWidth, Theme.tipWidth)
    }
}
