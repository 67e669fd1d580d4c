import QtQuick
import QtQuick.Controls
import QtQuick.Layouts
import Client.Common

/// Adds the same bookmark on one or several cameras.
FormDialog {
    id: dialog

    required property KnownGroups known

    property var targets: []     ///< cameras of the last request
    property var request: null   ///< bookmarks of the last request, as in AppState.added
    property bool checking: false ///< after a failure: a query of all bookmarks is running

    objectName: "addDialog"
    title: qsTr("Add a bookmark")
    acceptText: cameras.cameras.length > 1 ? qsTr("Add %1").arg(cameras.cameras.length)
                                           : qsTr("Add")
    valid: range.valid
    missing: cameras.cameras.length === 0 ? qsTr("Choose a camera.") : ""
    firstField: description
    height: Math.min(parent ? parent.height - 40 : 560, 560)

    /// Opens the dialog for cameras. Times are milliseconds since the epoch; the default is the last
    /// minute.
    function openFor(wanted, startMoment, endMoment) {
        const last = endMoment ?? Date.now();
        cameras.begin(wanted);
        range.setRange(startMoment ?? last - 60000, last);
        description.text = "";
        creator.text = app.userName;
        group.begin("");
        open();
    }

    onSubmitted: {
        const common = [range.start, range.end, description.text, creator.text, group.editText];
        targets = cameras.cameras;
        request = {
            keys: targets.map(camera => camera.key),
            startTimestamp: range.start,
            endTimestamp: range.end,
            description: description.text,
            creator: creator.text,
            group: group.editText
        };
        begin(1, targets.map(camera => camera.relayPath));
        if (targets.length === 1) {
            const camera = targets[0];
            noteSent(app.bookmarks.addBookmark(camera.cameraID, camera.locationID,
                                                  camera.relayPath, ...common));
        } else {
            const list = targets.map(camera => ({
                        CameraID: camera.cameraID,
                        LocationID: camera.locationID,
                        relayPath: camera.relayPath
                    }));
            noteSent(app.bookmarks.addBookmarks(list, ...common));
        }
    }

    function noteAdded(success) {
        if (!noteSignal())
            return;
        app.added = request;
        checking = !success;
        if (success) {
            finish("");
        } else {
            timeout.restart();
            app.refresh();
        }
    }

    /// Finds the failed cameras in the list of all bookmarks, because the signal names cameras by texts
    /// that may be equal, and reports a failure also if a view cell can't show a stored bookmark.
    /// Keeps only the failed cameras checked, so that another try adds no bookmark twice.
    function finishChecked() {
        checking = false;
        const failed = targets.filter(camera => !isStored(camera));
        cameras.choose(targets, false);
        cameras.choose(failed, true);
        cameras.show(failed[0]);
        const titles = failed.slice(0, 5).map(camera => cameras.titleOf(camera)).join(", ");
        finish(failed.length === 0 ? "" : qsTr("Not added on %1 of %2 cameras: %3")
            .arg(failed.length).arg(targets.length).arg(titles + (failed.length > 5 ? ", …" : "")));
    }

    function isStored(camera) {
        const page = app.bookmarks.getFilteredBookmarkList({
            nodeID: camera.key,
            startTimestamp: request.startTimestamp,
            endTimestamp: request.startTimestamp
        });
        return page.bookmarkGroupList.some(
            group => group.bookmarkList.some(record => app.isOneOf(record, request)));
    }

    onClosed: checking = false

    Connections {
        target: dialog.app
        enabled: dialog.checking
        function onRefreshed() {
            dialog.finishChecked();
        }
    }
    Connections {
        target: dialog.app.plugin
        enabled: dialog.pending > 0
        function onAddBookmarkResponsed(success) {
            dialog.noteAdded(success);
        }
        function onAddBookmarksResponsed(failCamNameList) {
            dialog.noteAdded(failCamNameList.length === 0);
        }
    }

    Label {
        text: qsTr("Description")
    }
    TextField {
        id: description
        objectName: "addDescription"
        Layout.fillWidth: true
        selectByMouse: true
        Accessible.name: qsTr("Description")
    }
    TimeRangeFields {
        id: range
        Layout.fillWidth: true
        timeZone: dialog.app.timeZone
    }
    RowLayout {
        spacing: Theme.gap

        Label {
            text: qsTr("Creator")
        }
        TextField {
            id: creator
            objectName: "addCreator"
            Layout.fillWidth: true
            selectByMouse: true
            Accessible.name: qsTr("Creator")
        }
        Label {
            text: qsTr("Group")
        }
        GroupField {
            id: group
            objectName: "addGroup"
            Layout.fillWidth: true
            known: dialog.known
            onAccepted: dialog.submit()
        }
    }
    CameraChecklist {
        id: cameras
        Layout.fillWidth: true
        Layout.fillHeight: true
        app: dialog.app
        required: dialog.tried
    }
}
