import QtQuick
import QtQuick.Controls
import Workbench

/// A payload as a tree of keys, values and types.
TreeView {
    id: view

    required property var payload

    objectName: "payloadTree"
    clip: true
    activeFocusOnTab: true
    boundsBehavior: Flickable.StopAtBounds
    columnSpacing: Theme.gap
    Accessible.name: qsTr("Payload")
    model: PayloadTree { value: view.payload }
    selectionModel: ItemSelectionModel { model: view.model }
    onPayloadChanged: contentY = 0
    delegate: TreeViewDelegate {
        implicitHeight: Theme.normalText + Theme.gap + 4
        ToolTip.visible: hovered
        ToolTip.delay: 600
        ToolTip.text: text
    }

    ScrollBar.vertical: ScrollBar { }
    ScrollBar.horizontal: ScrollBar { }
}
