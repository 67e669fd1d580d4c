import QtQuick
import QtQuick.Controls
import Client.Common

/// A row of the page: a bookmark, with the heading of its group if it is the first one.
Column {
    id: row

    required property int index
    required property var record
    required property bool selected
    required property string sectionTitle
    required property int sectionCount
    required property bool byDate ///< the heading has the date
    required property bool focused ///< the list has the keyboard focus
    required property bool framed  ///< the user has just added it

    readonly property bool current: ListView.isCurrentItem
    readonly property string wholeText: [record.displayDateTime, record.displayTimeRange,
        record.cameraName, record.description, people.text].join("\n")

    signal pressed(int modifiers)
    signal showWanted()

    width: ListView.view ? ListView.view.width : 0

    SectionHeading {
        width: parent.width
        visible: count > 0
        title: row.sectionTitle
        count: row.sectionCount
    }
    Rectangle {
        id: body
        objectName: "row-" + row.index
        width: parent.width
        height: time.height + description.height + 7
        color: row.selected ? Theme.selection : hover.hovered ? Theme.raised : "transparent"
        border.width: row.framed ? 2 : row.current && row.focused ? 1 : 0
        border.color: row.framed ? Theme.good : Theme.accent
        Accessible.role: Accessible.ListItem
        Accessible.name: row.wholeText
        Accessible.selected: row.selected

        // Anchors instead of layouts, which are slower: all texts change with every typed letter.
        Label {
            id: time
            anchors { left: parent.left; leftMargin: Theme.gap; top: parent.top; topMargin: 3 }
            text: row.byDate ? row.record.displayTimeRange : row.record.displayDateTime
            font.pixelSize: Theme.smallText
        }
        Label {
            id: camera
            anchors { left: time.right; leftMargin: Theme.gap; baseline: time.baseline }
            anchors { right: parent.right; rightMargin: Theme.gap }
            horizontalAlignment: Text.AlignRight
            text: row.record.cameraName
            textFormat: Text.PlainText
            elide: Text.ElideMiddle
            color: Theme.faintText
            font.pixelSize: Theme.smallText
        }
        Label {
            id: description
            anchors { left: time.left; right: people.left; rightMargin: Theme.gap }
            anchors { top: time.bottom; topMargin: 1 }
            text: row.record.description || qsTr("(no text)")
            textFormat: Text.PlainText
            elide: Text.ElideRight
            maximumLineCount: 1
            color: row.record.description ? Theme.text : Theme.faintText
        }
        Label {
            id: people
            anchors { right: camera.right; baseline: description.baseline }
            width: Math.min(implicitWidth, body.width * 0.45)
            text: [row.record.creator, row.record.group].filter(part => part).join(" · ")
            textFormat: Text.PlainText
            elide: Text.ElideRight
            color: Theme.faintText
            font.pixelSize: Theme.smallText
        }
        HoverHandler {
            id: hover
        }
        ToolTip.text: row.wholeText
        ToolTip.visible: hover.hovered
                         && (camera.truncated || description.truncated || people.truncated)
        ToolTip.delay: 500
        TapHandler {
            acceptedModifiers: Qt.KeyboardModifierMask
            onTapped: row.pressed(point.modifiers)
            onDoubleTapped: row.showWanted()
        }
    }
}
