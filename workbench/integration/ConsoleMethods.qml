pragma ComponentBehavior: Bound
import QtQuick
import QtQuick.Controls
import QtQuick.Layouts
import Client.Common

/// Lists the plug-in's methods whose names contain the search text.
ColumnLayout {
    id: pane

    required property var methods

    signal chosen(var method)

    readonly property var found: methods.filter(
        method => method.name.toLowerCase().includes(search.text.trim().toLowerCase()))

    spacing: Theme.gap

    TextField {
        id: search
        objectName: "methodSearch"
        placeholderText: qsTr("Find a method")
        selectByMouse: true
        Accessible.name: placeholderText
        Keys.onDownPressed: list.forceActiveFocus()
        Keys.onEscapePressed: clear()
        onAccepted: {
            if (pane.found.length > 0)
                pane.chosen(pane.found[Math.max(0, list.currentIndex)]);
        }
        Layout.fillWidth: true
    }
    ListView {
        id: list
        objectName: "methodList"
        model: pane.found
        clip: true
        currentIndex: 0
        keyNavigationEnabled: true
        activeFocusOnTab: true
        boundsBehavior: Flickable.StopAtBounds
        Accessible.role: Accessible.List
        Accessible.name: qsTr("Methods")
        Keys.onReturnPressed: {
            if (currentIndex >= 0 && currentIndex < pane.found.length)
                pane.chosen(pane.found[currentIndex]);
        }
        Layout.fillWidth: true
        Layout.fillHeight: true

        ScrollBar.vertical: ScrollBar { }
        delegate: ItemDelegate {
            id: row
            required property int index
            required property var modelData
            width: list.width
            highlighted: ListView.isCurrentItem
            focusPolicy: Qt.NoFocus
            padding: 3
            text: modelData.name
            font.pixelSize: Theme.smallText
            ToolTip.visible: hovered
            ToolTip.delay: 600
            ToolTip.text: modelData.signature
            onClicked: {
                list.currentIndex = index;
                pane.chosen(modelData);
            }
            contentItem: Column {
                Label {
                    width: parent.width
                    text: row.modelData.name
                    font.bold: true
                    elide: Text.ElideRight
                    color: row.highlighted ? Theme.accentText : Theme.text
                }
                Label {
                    width: parent.width
                    text: row.modelData.parameters.map(parameter => parameter.name).join(", ")
                    visible: text !== ""
                    elide: Text.ElideRight
                    font.pixelSize: Theme.smallText
                    color: row.highlighted ? Theme.accentText : Theme.faintText
                }
            }
        }
    }
}
