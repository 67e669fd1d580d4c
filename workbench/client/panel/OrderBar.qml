import QtQuick
import QtQuick.Controls
import QtQuick.Layouts
import Client.Common

/// Selects group and order of the bookmarks, and shows the camera of the filter.
RowLayout {
    id: bar

    required property AppState app
    required property BookmarkFilter filter

    /// Asks to save the bookmarks that match the filter.
    signal exportWanted()

    readonly property bool byDate: filter.groupKey === "displayDate"

    spacing: Theme.gap

    Label {
        text: qsTr("By")
    }
    ComboBox {
        objectName: "groupBox"
        Layout.preferredWidth: 110
        textRole: "text"
        valueRole: "key"
        model: [
            { key: "displayDate", text: qsTr("date") },
            { key: "cameraName", text: qsTr("camera") },
            { key: "creator", text: qsTr("creator") },
            { key: "group", text: qsTr("group") }
        ]
        currentIndex: model.findIndex(choice => choice.key === bar.filter.groupKey)
        Accessible.name: qsTr("Group by")
        ToolTip.text: qsTr("Value by which bookmarks are grouped")
        ToolTip.visible: hovered && !popup.visible
        onActivated: index => bar.filter.groupKey = model[index].key
    }
    ToolButton {
        objectName: "orderButton"
        focusPolicy: Qt.StrongFocus
        text: bar.filter.ascending ? "↑" : "↓"
        Accessible.name: ToolTip.text
        ToolTip.text: bar.byDate ? bar.filter.ascending ? qsTr("Oldest day first")
                                                        : qsTr("Newest day first")
                                 : bar.filter.ascending ? qsTr("A to Z") : qsTr("Z to A")
        ToolTip.visible: hovered
        onClicked: bar.filter.ascending = !bar.filter.ascending
    }
    Button {
        id: chip
        objectName: "cameraChip"
        readonly property var camera: bar.app.currentCamera
        readonly property string cameraName: camera
            ? qsTr("%1 - %2").arg(camera.stationName).arg(camera.name) : ""
        visible: camera !== null
        Layout.fillWidth: true
        Layout.maximumWidth: implicitWidth
        Accessible.name: qsTr("Only %1; press to show all cameras").arg(cameraName)
        ToolTip.text: Accessible.name
        ToolTip.visible: hovered
        onClicked: bar.app.currentCamera = null
        contentItem: Label {
            text: qsTr("%1 ×").arg(chip.cameraName)
            elide: Text.ElideMiddle
            color: Theme.accent
            horizontalAlignment: Text.AlignHCenter
        }
    }
    Item {
        Layout.fillWidth: true
    }
    ToolButton {
        objectName: "exportButton"
        focusPolicy: Qt.StrongFocus
        text: qsTr("Export …")
        ToolTip.text: qsTr("Save the bookmarks found as CSV, for --import")
        ToolTip.visible: hovered
        onClicked: bar.exportWanted()
    }
}
