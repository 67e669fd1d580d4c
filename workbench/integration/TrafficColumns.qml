import QtQml
import Qt.labs.settings

/// The columns of the traffic before the payload. Saves their widths for the next run.
QtObject {
    id: columns

    readonly property var titles: [qsTr("Time"), qsTr("Call"), qsTr("Kind"), qsTr("Name"),
        qsTr("Station"), qsTr("Code"), qsTr("Took")]
    readonly property var widths: settings.chosen.length > 0 ? settings.chosen : [84, 34, 76, 236, 52, 50, 60]

    function isNumber(column) {
        return column === 1 || column === 6;
    }

    function setWidth(column, width) {
        const changed = Array.from(widths);
        changed[column] = Math.max(24, Math.round(width));
        settings.chosen = changed;
    }

    readonly property Settings storage: Settings {
        id: settings
        category: "traffic"
        property var chosen: [] ///< empty: the default widths, which would be kept as well
    }
}
