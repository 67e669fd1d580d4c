pragma ComponentBehavior: Bound
import QtQuick
import QtQuick.Controls
import Client.Common
import Integration

/// Search and choice of kinds, pause and clear, above the traffic.
Flow {
    id: bar

    required property TrafficModel traffic
    required property int shownCount
    readonly property string text: search.settledText
    readonly property real lineHeight: search.height
    property var hiddenKinds: []
    required property string error ///< in the text
    property bool canCopy: false ///< an entry is chosen
    property bool live: true ///< the traffic goes on

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
        hint: qsTr("Texts and conditions: kind:send name:add station:relay-1 code:4 call:7 failed unanswered slower:500, with and, or, not and brackets. Of a payload the first %1 values are searched.")
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
        hint: qsTr("Nothing is lost: what passes meanwhile appears afterwards")
    }
    BarButton {
        objectName: "copyPayload"
        height: bar.lineHeight
        text: qsTr("Copy")
        enabled: bar.canCopy
        onClicked: bar.copyWanted()
        hint: qsTr("The payload of the chosen entry as JSON (Ctrl+C)")
    }
    BarButton {
        objectName: "copyEntry"
        height: bar.lineHeight
        text: qsTr("Copy entry")
        enabled: bar.canCopy
        onClicked: bar.copyEntryWanted()
        hint: qsTr("The chosen entry as in a saved file (Ctrl+Shift+C)")
    }
    BarButton {
        objectName: "saveTraffic"
        height: bar.lineHeight
        text: qsTr("Save…")
        onClicked: bar.saveWanted()
        hint: qsTr("As JSON lines, for --replay")
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
        hint: qsTr("Forget the traffic so far")
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
