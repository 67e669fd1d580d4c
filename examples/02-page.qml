import QtQuick
import QtQuick.Controls
import Tessaline

/// Updates a page of bookmarks with each letter of the search text.
Item {
    id: root

    property var page: ({ totalBookmarkNumber: 0, bookmarkGroupList: [] })

    TessalinePlugin {
        id: plugin
        target: bookmarks // qmllint disable unqualified
        // Each station's answer emits the signal: show the bookmarks so far.
        onQueryAllBookmarksResponsed: done => {
            root.updatePage();
            print("Found", root.page.totalBookmarkNumber, "with", search.text, done ? "" : "so far");
        }
    }

    // The plug-in stores the list and returns a page in less than a millisecond, so neither a timer
    // nor a copy of the list is needed.
    function updatePage(): void {
        page = plugin.getFilteredBookmarkList({
            text: search.text,
            // Without a range the plug-in finds only bookmarks that start in 1970.
            startTimestamp: 0, endTimestamp: Date.now(),
            groupKey: "displayDate", ascending: false, pageNumber: 0
        });
    }

    TextField {
        id: search
        width: parent.width
        text: "van"
        placeholderText: "Search"
        onTextChanged: root.updatePage()
    }
    ListView {
        anchors { fill: parent; topMargin: search.height }
        clip: true
        model: root.page.bookmarkGroupList
        delegate: Column {
            id: group
            required property var modelData
            Text {
                text: group.modelData.title
                font.bold: true
            }
            Repeater {
                model: group.modelData.bookmarkList
                Text {
                    required property var modelData
                    text: modelData.displayTimeRange + "  " + modelData.cameraName + "  "
                          + modelData.description
                }
            }
        }
    }
    Component.onCompleted: plugin.queryAllBookmarks()
}
