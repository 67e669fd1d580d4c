import QtQuick
import Client.Common

/// Keys that work for every focus.
Item {
    id: shortcuts

    signal addWanted
    signal refreshWanted
    signal drawerToggled
    signal helpWanted
    signal searchWanted
    signal treeWanted
    signal cellsWanted

    readonly property var texts: [
        ["F1, ?", qsTr("This help")],
        ["F5", qsTr("Query all stations again")],
        ["Ctrl+F", qsTr("Search bookmarks")],
        ["Ctrl+T", qsTr("Find a camera")],
        ["Ctrl+G", qsTr("Go to the view cells")],
        ["Ctrl+N", qsTr("Add a bookmark")],
        ["F12", qsTr("Traffic, log and faults")],
        ["Ctrl+D", qsTr("Light or dark")],
        ["Tab, Shift+Tab", qsTr("Next, previous control")],
        ["Ctrl+Q", qsTr("Quit")]
    ]

    Shortcut { sequences: ["F1", "?"]; onActivated: shortcuts.helpWanted() }
    Shortcut { sequence: "F5"; onActivated: shortcuts.refreshWanted() }
    Shortcut { sequence: "Ctrl+F"; onActivated: shortcuts.searchWanted() }
    Shortcut { sequence: "Ctrl+T"; onActivated: shortcuts.treeWanted() }
    Shortcut { sequence: "Ctrl+G"; onActivated: shortcuts.cellsWanted() }
    Shortcut { sequence: "Ctrl+N"; onActivated: shortcuts.addWanted() }
    Shortcut { sequence: "F12"; onActivated: shortcuts.drawerToggled() }
    Shortcut { sequence: "Ctrl+D"; onActivated: Theme.dark = !Theme.dark }
    Shortcut { sequence: "Ctrl+Q"; onActivated: Qt.quit() }
}
