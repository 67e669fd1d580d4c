pragma ComponentBehavior: Bound
import QtQuick
import QtQuick.Controls
import QtQuick.Layouts
import Client.Common

/// Selects any number of cameras of all stations.
ColumnLayout {
    id: list

    required property AppState app
    property bool required: false ///< shows an empty selection as an error

    property var chosen: ({}) ///< cameras by key
    readonly property var cameras: Object.values(chosen)
    readonly property alias input: search

    function begin(cameras) {
        search.text = "";
        const byKey = {};
        cameras.forEach(camera => byKey[camera.key] = camera);
        chosen = byKey;
        view.positionViewAtBeginning();
        show(cameras[0]);
    }

    function choose(cameras, wanted) {
        const byKey = Object.assign({}, chosen);
        for (const camera of cameras) {
            if (wanted)
                byKey[camera.key] = camera;
            else
                delete byKey[camera.key];
        }
        chosen = byKey;
    }

    /// Scrolls to a camera; does nothing for one that is not listed.
    function show(camera) {
        const row = camera ? view.model.findIndex(one => one.key === camera.key) : -1;
        if (row >= 0)
            view.positionViewAtIndex(row, ListView.Contain);
    }

    function titleOf(camera) {
        return qsTr("%1 - %2").arg(camera.stationName).arg(camera.name);
    }

    function matching(text) {
        const wanted = text.toLocaleLowerCase();
        return app.topology.cameras.filter(
            camera => titleOf(camera).toLocaleLowerCase().includes(wanted));
    }

    spacing: 2

    RowLayout {
        TextField {
            id: search
            objectName: "cameraSearch"
            Layout.fillWidth: true
            placeholderText: qsTr("Find a camera")
            Accessible.name: placeholderText
            Keys.onDownPressed: view.forceActiveFocus(Qt.TabFocusReason)
        }
        Button {
            objectName: "checkShown"
            text: qsTr("All listed")
            ToolTip.text: qsTr("Check all cameras that are listed")
            ToolTip.visible: hovered
            onClicked: list.choose(view.model, true)
        }
        Button {
            objectName: "checkNone"
            text: qsTr("None")
            onClicked: list.chosen = {}
        }
    }
    ListView {
        id: view
        objectName: "cameraChecklist"
        Layout.fillWidth: true
        Layout.preferredHeight: 140
        Layout.fillHeight: true
        clip: true
        activeFocusOnTab: true
        boundsBehavior: Flickable.StopAtBounds
        model: list.matching(search.text)
        Accessible.role: Accessible.List
        Accessible.name: qsTr("Cameras")
        ScrollBar.vertical: ScrollBar {}
        Keys.onSpacePressed: {
            const camera = model[currentIndex];
            list.choose([camera], !list.chosen[camera.key]);
        }
        delegate: CheckDelegate {
            id: row
            required property int index
            required property var modelData
            objectName: "check-" + modelData.key
            width: view.width
            padding: 3
            focusPolicy: Qt.NoFocus
            text: list.titleOf(modelData)
            checked: list.chosen[modelData.key] !== undefined
            highlighted: view.activeFocus && ListView.isCurrentItem
            onToggled: list.choose([modelData], checked)
            background: Rectangle {
                color: row.highlighted ? Theme.selection : "transparent"
            }
            contentItem: Label {
                text: row.text
                elide: Text.ElideRight
                rightPadding: row.indicator.width + row.spacing
            }
        }
    }
    Label {
        objectName: "chosenCameras"
        Layout.fillWidth: true
        elide: Text.ElideRight
        color: list.cameras.length > 0 || !list.required ? Theme.faintText : Theme.failure
        font.pixelSize: Theme.smallText
        text: list.cameras.length === 0 ? qsTr("Choose a camera")
            : list.cameras.length === 1 ? list.titleOf(list.cameras[0])
            : qsTr("%1 cameras").arg(list.cameras.length)
    }
}
