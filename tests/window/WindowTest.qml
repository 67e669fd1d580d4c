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

    when: windowShown

    function init() {
        lab.reset();
        window = createTemporaryObject(mainWindow, testCase, { plugin: plugin, bench: bench });
        waitForRendering(window.contentItem);
        tryCompare(bench, "outstanding", 0);
    }

    Component {
        id: mainWindow

        Main {}
    }
}
