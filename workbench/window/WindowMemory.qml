import QtQuick
import Qt.labs.settings
import Client.Common
import Client.Panel
import Client.Timeline
import Integration

/// Saves and restores the state of the window between two runs.
Item {
    id: memory

    required property Window window
    required property size room ///< for the window
    required property CellGrid cells
    required property BookmarkPanel panel
    required property IntegratorDrawer drawer
    required property var splits ///< list of SplitView

    function restore() {
        Theme.dark = settings.dark;
        const [width, height] = [settings.width || window.width, settings.height || window.height];
        window.width = Math.max(window.minimumWidth, Math.min(width, room.width));
        window.height = Math.max(window.minimumHeight, Math.min(height, room.height));
        drawer.visible = settings.drawer;
        splits.forEach((split, i) => {
            if (settings.splits[i])
                split.restoreState(settings.splits[i]);
        });
        restorePart(cells, settings.cells || "{}"); // an empty state shows the first cameras
        restorePart(panel, settings.panel);
    }

    function restorePart(part, text) {
        if (text !== "")
            part.restoreState(JSON.parse(text));
    }

    function save() {
        settings.dark = Theme.dark;
        settings.width = window.width;
        settings.height = window.height;
        settings.drawer = drawer.visible;
        settings.splits = splits.map(split => split.saveState());
        settings.cells = JSON.stringify(cells.saveState());
        settings.panel = JSON.stringify(panel.saveState());
    }

    Settings {
        id: settings
        category: "window"

        property bool dark: false
        property int width: 0 ///< 0 for the default, as height
        property int height: 0
        property bool drawer: false
        property var splits: []
        property string cells: ""
        property string panel: ""
    }
}
