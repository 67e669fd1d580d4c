import QtQuick
import QtTest
import Workbench

/// Base of the window's tests. Each test function gets a new window and reset stations.
TestCase {
    id: testCase

    property Main window: null

    /// Returns the item or object with a name in the window or its popups, or null.
    function find(objectName) {
        let top = window.contentItem;
        while (top.parent) // the number of parents depends on the version of Qt
            top = top.parent;
        return findChild(top, objectName) || findChild(window, objectName);
    }

    /// Returns the number of bookmarks in the plug-in's list of all bookmarks.
    function bookmarkCount() {
        return plugin.getBookmarkListByNodeID("").length;
    }

    /// Updates the positions of items, as the next frame would.
    function updateLayout() { grabImage(window.contentItem); }

    /// Returns the visible texts in an item, from its first child to the last.
    function texts(item) {
        if (!item.visible)
            return [];
        const own = typeof item.text === "string" ? [item.text] : [];
        return own.concat(...Array.from(item.children, child => texts(child)));
    }

    function type(text) { for (const letter of text) keyClick(letter); }

    when: windowShown

    function init() {
        lab.reset();
        open();
    }

    function open(properties) {
        window = createTemporaryObject(mainWindow, testCase,
                                       Object.assign({ plugin: plugin, workbench: workbench }, properties));
        window.requestActivate();
        tryCompare(window, "active", true);
        tryCompare(workbench, "outstanding", 0);
        waitForRendering(window.contentItem);
    }

    Component {
        id: mainWindow

        Main {}
    }
}
