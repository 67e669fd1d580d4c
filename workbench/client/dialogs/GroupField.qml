import QtQuick
import QtQuick.Controls

/// Edits a group; suggests the groups of existing bookmarks.
ComboBox {
    id: box

    required property KnownGroups known
    property string initial: ""
    readonly property bool touched: editText !== initial

    function begin(text) {
        model = known.names();
        currentIndex = -1;
        initial = text;
        editText = text;
    }

    editable: true
    selectTextByMouse: true
    Accessible.name: qsTr("Group")
    ToolTip.text: qsTr("Type a group or choose one")
    ToolTip.visible: hovered && !popup.visible
}
