import QtQuick
import QtTest
import Workbench

/// A test of the window: each function gets a new one, with the stations as they were at the start.
TestCase {
    id: testCase

    property Main window: null

    /// Item or object with that name, in the window or in what it has popped up; null for none.
    function find(objectName) {
        return findChild(window.contentItem.parent, objectName) || findChild(window, objectName);
    }

    /// How many bookmarks the plug-in's list of all bookmarks holds.
    function bookmarkCount() {
        return plugin.getBookmarkListByNodeID("").length;
    }

    /// Texts that can be read in an item, from its first child to the last.
    function texts(item) {
        if (!item.visible)
            return [];
        const own = typeof item.text === "string" ? [item.text] : [];
        return own.concat(...Array.from(item.children, child => texts(child)));
    }

    /// Kind, name and payload of what has passed, the oldest first.
    function traffic() {
        const model = bench.traffic;
        return Array.from({ length: model.count }, (_, row) => ({
            kind: model.data(model.index(row, 0), TrafficModel.KindRole),
            name: model.data(model.index(row, 0), TrafficModel.NameRole),
            payload: model.payloadAt(row)
        }));
    }

    function type(text) { for (const letter of text) keyClick(letter); }

    when: windowShown

    function init() {
        lab.reset();
        open();
    }

    function open() {
        window = createTemporaryObject(mainWindow, testCase, { plugin: plugin, bench: bench });
        window.requestActivate();
        tryCompare(window, "active", true);
        tryCompare(bench, "outstanding", 0);
        waitForRendering(window.contentItem);
    }

    Component {
        id: mainWindow

        Main {}
    }
}
