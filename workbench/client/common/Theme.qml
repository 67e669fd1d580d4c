pragma Singleton
import QtQuick

/// The colours and sizes of the window, with a light and a dark set of colours.
QtObject {
    id: theme

    property bool dark: false

    readonly property color window: dark ? "#181b1f" : "#f2f3f5"
    readonly property color surface: dark ? "#2c323a" : "#ffffff"
    readonly property color raised: dark ? "#323942" : "#e7eaee"
    readonly property color line: dark ? "#434b56" : "#c9ced6"
    readonly property color text: dark ? "#e6e9ed" : "#1d2126"
    readonly property color faintText: dark ? "#a3acb8" : "#5a6370"
    readonly property color accent: dark ? "#5aa9f5" : "#1565c0"
    readonly property color accentText: dark ? "#10161d" : "#ffffff"
    readonly property color selection: dark ? "#2b4a6b" : "#cfe3fa"
    readonly property color good: dark ? "#63c37c" : "#23803d"
    readonly property color warning: dark ? "#e6b450" : "#946200"
    readonly property color failure: dark ? "#f07f78" : "#b3261e"
    readonly property color mark: dark ? "#e0a83c" : "#d98a00" ///< a bookmark on a timeline
    readonly property color playHead: dark ? "#f07f78" : "#d0342c"

    readonly property color veil: dark ? "#a0000000" : "#60000000" ///< over the window behind a dialog

    readonly property int gap: 6        ///< between controls, in device-independent pixels
    readonly property int margin: 10    ///< between panes and their content
    readonly property int radius: 4
    readonly property int tipWidth: 420 ///< of the widest tooltip
    readonly property int smallText: 11 ///< in pixels, as the two below
    readonly property int normalText: 13
    readonly property int largeText: 16
}
