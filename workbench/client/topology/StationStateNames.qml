pragma Singleton
import QtQml
import Client.Common

/// Words and colours for the states of stations.
QtObject {
    readonly property var words: ({
        connected: qsTr("connected"),
        slow: qsTr("slow"),
        failing: qsTr("failing"),
        disconnected: qsTr("disconnected")
    })
    readonly property var colors: ({
        connected: Theme.good,
        slow: Theme.warning,
        failing: Theme.failure,
        disconnected: Theme.faintText
    })

    function word(state) {
        return words[state] || qsTr("state unknown");
    }
    function color(state) {
        return colors[state] || "transparent";
    }
}
