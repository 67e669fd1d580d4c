import QtQuick
import Workbench

/// Keys that work wherever the focus is.
Item {
    id: shortcuts

    signal addWanted
    signal refreshWanted
    signal drawerToggled
    signal helpWanted
    signal searchWanted
    signal treeWanted
    signal cellsWanted

    readonly property list<QtObject> texts: [
        ShortcutText { keys: "F1, ?"; what: qsTr("this help") },
        ShortcutText { keys: "F5"; what: qsTr("ask all stations again") },
        ShortcutText { keys: "Ctrl+F"; what: qsTr("search bookmarks") },
        ShortcutText { keys: "Ctrl+T"; what: qsTr("find a camera") },
        ShortcutText { keys: "Ctrl+G"; what: qsTr("go to the view cells") },
        ShortcutText { keys: "Ctrl+N"; what: qsTr("add a bookmark") },
        ShortcutText { keys: "F12"; what: qsTr("traffic, log and faults") },
        ShortcutText { keys: "Ctrl+D"; what: qsTr("light or dark") },
        ShortcutText { keys: "Tab, Shift+Tab"; what: qsTr("next, previous control") },
        ShortcutText { keys: "Ctrl+Q"; what: qsTr("quit") }
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
