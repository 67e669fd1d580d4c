import QtQuick
import QtQuick.Controls
import Tessaline

/// A page of bookmarks that follows each letter.
Item {
    id: root

    property var page: ({ totalBookmarkNumber: 0, bookmarkGroupList: [] })

    TessalinePlugin {
        id: plugin
        target: bookmarks // qmllint disable unqualified
        // One signal for each station: show what has arrived, do not wait for the last one.
        onQueryAllBookmarksResponsed: done => {
            root.updatePage();
            print("Found", root.page.totalBookmarkNumber, "with", search.text, done ? "" : "so far");
        }
    }

    // The plug-in keeps the list, and a page takes less than a millisecond: no timer is needed, and
    // no copy of the list.
    function updatePage(): void {
        page = plugin.getFilteredBookmarkList({
            text: search.text,
            // Without a range only bookmarks that start in 1970 are found.
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
