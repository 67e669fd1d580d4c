pragma ComponentBehavior: Bound
import QtQuick
import QtQuick.Controls
import Client.Common

/// Lists stations and the cameras of unfolded stations, one per row.
ListView {
    id: tree

    required property AppState app
    /// Shows only cameras and stations whose names contain this text.
    property string filter: ""

    property var folded: ({}) ///< relay paths of stations whose cameras are hidden

    signal menuWanted(var station, Item row)

    clip: true
    activeFocusOnTab: true
    boundsBehavior: Flickable.StopAtBounds
    keyNavigationEnabled: true
    currentIndex: -1
    model: rows()
    Accessible.role: Accessible.Tree
    Accessible.name: qsTr("Stations and cameras")

    ScrollBar.vertical: ScrollBar {}

    /// @return maps of station and camera; camera is null in the row of a station
    function rows() {
        const wanted = filter.toLocaleLowerCase();
        const list = [];
        for (const station of app.topology.stations) {
            const all = station.name.toLocaleLowerCase().includes(wanted);
            const cameras = station.cameras.filter(
                camera => all || camera.name.toLocaleLowerCase().includes(wanted));
            if (!all && cameras.length === 0)
                continue;
            list.push({ station: station, camera: null });
            if (!folded[station.relayPath] || wanted !== "")
                cameras.forEach(camera => list.push({ station: station, camera: camera }));
        }
        return list;
    }

    function setFolded(station, fold) {
        const changed = Object.assign({}, folded);
        changed[station.relayPath] = fold;
        const y = contentY;
        const index = model.findIndex(row => !row.camera
                                      && row.station.relayPath === station.relayPath);
        folded = changed;
        contentY = y;
        currentIndex = index;
    }

    function activate(row) {
        if (row.camera)
            app.cameraWanted(row.camera);
        else
            setFolded(row.station, !folded[row.station.relayPath]);
    }

    onActiveFocusChanged: {
        if (activeFocus && currentIndex < 0 && count > 0)
            currentIndex = 0;
    }

    Keys.onPressed: event => {
        const row = currentIndex < 0 ? null : model[currentIndex];
        if (!row)
            return;
        event.accepted = true;
        if (event.key === Qt.Key_Return || event.key === Qt.Key_Enter)
            activate(row);
        else if (event.key === Qt.Key_Space && row.camera)
            app.currentCamera = row.camera;
        else if (event.key === Qt.Key_Left)
            setFolded(row.station, true);
        else if (event.key === Qt.Key_Right && !row.camera)
            setFolded(row.station, false);
        else if (event.key === Qt.Key_Menu
                 || (event.key === Qt.Key_F10 && event.modifiers & Qt.ShiftModifier))
            menuWanted(row.station, currentItem);
        else
            event.accepted = false;
    }

    delegate: TopologyRow {
        app: tree.app
        width: ListView.view.width
        folded: tree.folded[modelData.station.relayPath] === true
        focused: tree.activeFocus && ListView.isCurrentItem
        onActivated: tree.activate(modelData)
        onPressed: {
            tree.currentIndex = index;
            tree.forceActiveFocus(Qt.MouseFocusReason);
        }
        onFoldWanted: fold => tree.setFolded(modelData.station, fold)
        onMenuWanted: tree.menuWanted(modelData.station, this)
    }
}
