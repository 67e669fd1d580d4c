import QtQuick
import QtQuick.Controls
import QtQuick.Layouts
import Client.Common

/// Edits the search text; has a button to add a bookmark.
RowLayout {
    id: bar

    required property BookmarkFilter filter

    signal addWanted()
    /// The user leaves the field for the list.
    signal finished()

    spacing: Theme.gap

    function focusSearch() {
        field.forceActiveFocus(Qt.ShortcutFocusReason);
        field.selectAll();
    }

    TextField {
        id: field
        objectName: "searchField"
        Layout.fillWidth: true
        placeholderText: qsTr("Search camera, text, creator, time")
        text: bar.filter.text
        selectByMouse: true
        rightPadding: clearButton.visible ? clearButton.width : Theme.gap
        Accessible.name: qsTr("Search text")
        ToolTip.text: qsTr("Search camera, description, creator and time (Ctrl+F)")
        ToolTip.visible: hovered && !activeFocus
        ToolTip.delay: 700
        onTextEdited: bar.filter.text = text
        Keys.onEscapePressed: bar.filter.text = ""
        Keys.onDownPressed: bar.finished()
        Keys.onReturnPressed: bar.finished()

        ToolButton {
            id: clearButton
            objectName: "clearSearch"
            anchors { right: parent.right; verticalCenter: parent.verticalCenter }
            visible: field.text !== ""
            text: "×"
            focusPolicy: Qt.NoFocus
            flat: true
            Accessible.name: qsTr("Clear the search text")
            ToolTip.text: qsTr("Clear (Esc)")
            ToolTip.visible: hovered
            onClicked: bar.filter.text = ""
        }
    }
    Button {
        objectName: "addButton"
        text: qsTr("Add …")
        ToolTip.text: qsTr("Add a bookmark on one camera or many (Ctrl+N)")
        ToolTip.visible: hovered
        onClicked: bar.addWanted()
    }
}
