import QtQuick
import QtQuick.Controls
import QtQuick.Layouts
import Client.Common
import Client.Topology

/// A row of the tree, a station or a camera. A camera can be dragged to a view cell.
ItemDelegate {
    id: row

    required property AppState app
    required property var modelData ///< an element of TopologyTree.rows()
    required property int index
    required property bool folded
    required property bool focused

    readonly property var camera: modelData.camera
    readonly property var station: modelData.station
    readonly property bool isCamera: camera !== null
    readonly property bool chosen: isCamera && app.currentCamera !== null
                                   && app.currentCamera.key === camera.key
    readonly property string stationState: app.topology.stationStates[station.relayPath] || ""

    signal activated
    signal foldWanted(bool fold)
    signal menuWanted

    objectName: isCamera ? "camera " + camera.key : "station " + station.relayPath
    height: 28
    leftPadding: isCamera ? 30 : Theme.gap
    rightPadding: Theme.gap
    text: isCamera ? camera.name : station.name
    font.bold: !isCamera
    highlighted: chosen
    Accessible.role: Accessible.TreeItem
    Accessible.name: isCamera ? text : qsTr("%1, %2").arg(text).arg(StationStateNames.word(stationState))

    onClicked: {
        if (isCamera)
            app.currentCamera = chosen ? null : camera;
        else
            foldWanted(!folded);
    }
    onDoubleClicked: {
        if (isCamera)
            activated();
    }

    contentItem: RowLayout {
        spacing: Theme.gap

        Label {
            visible: !row.isCamera
            text: row.folded ? "▸" : "▾"
            color: Theme.faintText
        }
        Label {
            text: row.text
            font: row.font
            elide: Text.ElideRight
            Layout.fillWidth: true
        }
        StationStateMark {
            visible: !row.isCamera
            stationState: row.stationState
        }
    }

    background: Rectangle {
        color: row.chosen ? Theme.selection : row.hovered ? Theme.raised : "transparent"
        radius: Theme.radius
        border { width: row.focused ? 2 : 0; color: Theme.accent }
    }

    ToolTip.visible: hovered && !drag.active
    ToolTip.delay: 600
    ToolTip.text: isCamera
        ? qsTr("%1, %2\nDouble-click or drag to a view cell; click to see its bookmarks").arg(text).arg(station.name)
        : qsTr("%1 (%2): %3\nRight-click for actions").arg(text).arg(station.relayPath).arg(StationStateNames.word(stationState))

    TapHandler {
        acceptedButtons: Qt.RightButton
        onTapped: row.menuWanted()
    }
    DragHandler {
        id: drag
        target: null
        enabled: row.isCamera
        onActiveChanged: {
            if (active)
                ghost.Drag.start();
            else
                ghost.Drag.drop();
        }
    }
    CameraGhost {
        id: ghost
        camera: row.camera
        text: row.text
        visible: drag.active
        parent: row.ApplicationWindow.contentItem // the tree clips
        position: row.mapToItem(parent, drag.centroid.position)
    }
}
