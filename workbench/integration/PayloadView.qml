import QtQuick
import QtQuick.Controls
import Client.Common
import Integration

/// Shows the payload of a traffic entry as a tree of keys, values and types.
TreeView {
    id: view

    required property TrafficModel traffic
    /// Row of the traffic; -1 for none.
    required property int row

    readonly property real typeWidth: 88 ///< fits the longest common type name
    readonly property real valueWidth: (width - typeWidth - 2 * columnSpacing) / 2

    function widthOf(column) {
        return Math.max(40, column === PayloadTree.TypeColumn ? typeWidth : valueWidth);
    }

    objectName: "payloadTree"
    columnWidthProvider: widthOf
    onWidthChanged: forceLayout()
    clip: true
    activeFocusOnTab: true
    boundsBehavior: Flickable.StopAtBounds
    columnSpacing: Theme.gap
    Accessible.name: qsTr("Payload")
    model: PayloadTree {
        traffic: view.traffic
        row: view.row
        onPayloadChanged: view.contentY = 0
    }
    selectionModel: ItemSelectionModel { model: view.model }
    delegate: TreeViewDelegate {
        id: part
        required property int column
        text: model.display
        implicitHeight: Theme.normalText + Theme.gap + 4
        ToolTip.visible: hovered
        ToolTip.delay: 600
        ToolTip.text: text
        contentItem: Label {
            text: part.text
            font.pixelSize: Theme.smallText
            elide: Text.ElideRight
            color: part.highlighted ? Theme.accentText
                : part.column === PayloadTree.TypeColumn ? Theme.faintText : Theme.text
        }
    }

    Label {
        parent: view // not the content, which scrolls
        anchors.centerIn: parent
        visible: view.row < 0
        color: Theme.faintText
        text: qsTr("Choose an entry to see its payload.")
    }

    ScrollBar.vertical: ScrollBar { }
    ScrollBar.horizontal: ScrollBar { }
}
