import QtQuick
import QtQuick.Controls
import QtQuick.Templates as T
import Client.Common

/// Measures the tooltip that all controls share: as wide as its longest line, within reason. On its
/// own it would be as wide as all its lines one after the other.
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
