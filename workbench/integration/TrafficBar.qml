pragma ComponentBehavior: Bound
import QtQuick
import QtQuick.Controls
import Client.Common
import Integration

/// The bar above the traffic: filter, kinds, pause, copy, save, clear.
Flow {
    id: bar

    required property TrafficModel traffic
    required property int shownCount
    readonly property string text: search.appliedText
    readonly property real lineHeight: search.height
    property var hiddenKinds: []
    required property string error ///< of the filter text; empty if it is valid
    property bool canCopy: false ///< an entry is selected
    property bool live: true ///< shows the live traffic, not a recording

    signal copyWanted()
    signal copyEntryWanted()
    signal saveWanted()
    signal openWanted()

    function focusSearch() {
        search.forceActiveFocus();
    }

    function show(kinds, shown) {
        const others = hiddenKinds.filter(hidden => !kinds.includes(hidden));
        hiddenKinds = shown ? others : others.concat(kinds);
    }

    spacing: Theme.gap

    FilterField {
        id: search
        objectName: "trafficSearch"
        width: 300
        traffic: bar.traffic
        error: bar.error
        placeholderText: qsTr("Search or filter the traffic")
        hint: qsTr("Texts and conditions: kind:send name:add station:relay-1 code:4 call:7 failed unanswered slower:500, combined with and, or, not and brackets. A search reads the first %1 values of a payload.")
            .arg(bar.traffic.searchedValues)
    }
    Repeater {
        model: [[qsTr("Calls"), "call", "connection"], [qsTr("Commands"), "send"],
            [qsTr("Answers"), "answer"], [qsTr("Events"), "event"], [qsTr("Signals"), "signal"]]
        CheckBox {
            required property var modelData
            readonly property var kinds: modelData.slice(1)
            objectName: "show-" + kinds[0]
            text: modelData[0]
            height: bar.lineHeight
            checked: true
            onToggled: bar.show(kinds, checked)
        }
    }
    BarButton {
        objectName: "pauseTraffic"
        height: bar.lineHeight
        visible: bar.live
        text: qsTr("Pause")
        checkable: true
        checked: bar.traffic.paused
        onToggled: bar.traffic.paused = checked
        hint: qsTr("Stop the display; entries of the meantime appear afterwards")
    }
    BarButton {
        objectName: "copyPayload"
        height: bar.lineHeight
        text: qsTr("Copy")
        enabled: bar.canCopy
        onClicked: bar.copyWanted()
        hint: qsTr("Copy the payload of the chosen entry as JSON (Ctrl+C)")
    }
    BarButton {
        objectName: "copyEntry"
        height: bar.lineHeight
        text: qsTr("Copy entry")
        enabled: bar.canCopy
        onClicked: bar.copyEntryWanted()
        hint: qsTr("Copy the chosen entry as a line of a recording (Ctrl+Shift+C)")
    }
    BarButton {
        objectName: "saveTraffic"
        height: bar.lineHeight
        text: qsTr("Save…")
        onClicked: bar.saveWanted()
        hint: qsTr("Save a recording, as JSON lines for --replay")
    }
    BarButton {
        objectName: "openRecording"
        height: bar.lineHeight
        text: qsTr("Open recording…")
        onClicked: bar.openWanted()
        hint: qsTr("Show a saved file in place of the live traffic")
    }
    BarButton {
        height: bar.lineHeight
        visible: bar.live
        text: qsTr("Clear")
        onClicked: bar.traffic.clear()
        hint: qsTr("Remove all entries")
    }
    Label {
        height: bar.lineHeight
        verticalAlignment: Text.AlignVCenter
        text: qsTr("%1 of %2 entries").arg(bar.shownCount).arg(bar.traffic.count)
        color: Theme.faintText
    }
    Label {
        objectName: "unanswered"
        height: bar.lineHeight
        verticalAlignment: Text.AlignVCenter
        visible: bar.traffic.unanswered > 0
        text: qsTr("%1 without an answer").arg(bar.traffic.unanswered)
        color: Theme.failure
    }
}
