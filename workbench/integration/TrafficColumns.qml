import QtQml
import Qt.labs.settings

/// The columns of the traffic before its payload. Their widths are kept for the next time.
QtObject {
    id: columns

    readonly property var titles: [qsTr("Time"), qsTr("Call"), qsTr("Kind"), qsTr("Name"),
        qsTr("Station"), qsTr("Code"), qsTr("Took")]
    readonly property var widths: memory.widths

    function setWidth(column, width) {
        const changed = Array.from(memory.widths);
        changed[column] = Math.max(24, Math.round(width));
        memory.widths = changed;
    }

    readonly property Settings memory: Settings {
        category: "traffic"
        property var widths: [84, 34, 76, 200, 52, 50, 60]
    }
}
