import QtQuick
import QtQuick.Controls
import QtQuick.Layouts
import Client.Common
import Client.Panel

/// The bar with the actions for the selected bookmarks.
Rectangle {
    id: bar

    required property AppState app
    required property RecordSelection selection

    signal editWanted(var records)
    signal deleteWanted(var records)

    implicitHeight: row.implicitHeight + Theme.gap
    radius: Theme.radius
    color: Theme.selection

    RowLayout {
        id: row
        anchors { fill: parent; leftMargin: Theme.margin; rightMargin: Theme.gap }
        spacing: Theme.gap

        Label {
            objectName: "selectedCount"
            Layout.fillWidth: true
            elide: Text.ElideRight
            text: qsTr("%1 selected")
                .arg(Number(bar.selection.count).toLocaleString(Qt.locale(), "f", 0))
        }
        ToolButton {
            objectName: "editSelected"
            text: qsTr("Edit …")
            focusPolicy: Qt.StrongFocus
            ToolTip.text: qsTr("Change text and group (F2)")
            ToolTip.visible: hovered
            onClicked: bar.editWanted(bar.selection.records())
        }
        LockedButton {
            objectName: "deleteSelected"
            app: bar.app
            text: qsTr("Delete …")
            hint: qsTr("Delete the selected bookmarks (Del)")
            onClicked: bar.deleteWanted(bar.selection.records())
        }
        ToolButton {
            objectName: "clearSelection"
            text: qsTr("Clear")
            focusPolicy: Qt.StrongFocus
            ToolTip.text: qsTr("Select nothing (Esc)")
            ToolTip.visible: hovered
            onClicked: bar.selection.clear()
        }
    }
}
