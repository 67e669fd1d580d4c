pragma ComponentBehavior: Bound
import QtQuick
import QtQuick.Controls
import QtQuick.Layouts
import Client.Common

/// The bar above the view cells: their number, and the playback of the active one.
RowLayout {
    id: bar

    required property int cellCount
    required property PlayHead head ///< of the active cell; null if there is none
    property bool canPlay: false    ///< the active cell has a camera

    property bool inStep: false

    signal inStepChosen(bool on)
    signal cellCountChosen(int count)
    signal liveRequested()

    readonly property bool playing: head !== null && head.playing
    readonly property string activeHint: canPlay ? "" : qsTr("The active cell has no camera.")

    spacing: 4

    Label {
        text: qsTr("Cells")
        color: Theme.faintText
    }
    Repeater {
        model: [1, 2, 4, 6, 9]
        CellButton {
            required property int modelData
            objectName: "cells" + modelData
            text: modelData
            hint: qsTr("%1 view cells").arg(modelData)
            checkable: true
            autoExclusive: true
            checked: bar.cellCount === modelData
            onClicked: bar.cellCountChosen(modelData)
        }
    }
    CellButton {
        objectName: "inStep"
        text: "⇄"
        hint: qsTr("In step: all cells show the time of the active one (I)")
        checkable: true
        checked: bar.inStep
        onToggled: bar.inStepChosen(checked)
    }
    Item {
        Layout.fillWidth: true
    }
    CellButton {
        objectName: "play"
        enabled: bar.canPlay
        text: bar.playing ? "❚❚" : "▶"
        hint: bar.activeHint || (bar.playing ? qsTr("Pause (Space)") : qsTr("Play (Space)"))
        onClicked: bar.head.playing = !bar.playing
    }
    ComboBox {
        objectName: "speed"
        enabled: bar.canPlay
        implicitWidth: 74
        implicitHeight: 24
        model: [1, 2, 4, 8, 16, 60]
        displayText: currentValue + " ×"
        currentIndex: Math.max(0, indexOfValue(bar.head ? bar.head.speed : 1))
        onActivated: bar.head.speed = currentValue
        Accessible.name: qsTr("Speed")
        ToolTip.visible: hovered
        ToolTip.delay: 500
        ToolTip.text: bar.activeHint || qsTr("Speed")
    }
    Button {
        objectName: "now"
        enabled: bar.canPlay
        implicitWidth: 50
        implicitHeight: 24
        text: qsTr("Now")
        onClicked: bar.liveRequested()
        ToolTip.visible: hovered
        ToolTip.delay: 500
        ToolTip.text: bar.activeHint || qsTr("Go to the present and follow it (Home)")
    }
}
