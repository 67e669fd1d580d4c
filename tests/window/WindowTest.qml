import QtQuick
import QtTest
import Workbench

/// A test of the window: each function gets a new one, with the stations as they were at the start.
TestCase {
    id: testCase

    property Main window: null

    /// Item or object with that name, in the window or in what it has popped up; null for none.
    function find(objectName) {
        let top = window.contentItem;
        while (top.parent) // how many there are differs between versions of Qt
            top = top.parent;
        return findChild(top, objectName) || findChild(window, objectName);
    }

    /// How many bookmarks the plug-in's list of all bookmarks holds.
    function bookmarkCount() {
        return plugin.getBookmarkListByNodeID("").length;
    }

    /// Everything takes its place, as it would with the next frame.
    function settle() { grabImage(window.contentItem); }

    /// Texts that can be read in an item, from its first child to the last.
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
                                       Object.assign({ plugin: plugin, bench: bench }, properties));
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
