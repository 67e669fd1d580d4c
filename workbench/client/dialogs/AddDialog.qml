import QtQuick
import QtQuick.Controls
import QtQuick.Layouts
import Client.Common

/// Adds a bookmark on one camera, or the same on many.
FormDialog {
    id: dialog

    required property KnownGroups known

    property var asked: [] ///< cameras of the last try

    objectName: "addDialog"
    title: qsTr("Add a bookmark")
    acceptText: cameras.cameras.length > 1 ? qsTr("Add %1").arg(cameras.cameras.length)
                                           : qsTr("Add")
    valid: range.valid
    missing: cameras.cameras.length === 0 ? qsTr("Choose a camera.") : ""
    firstField: description
    height: Math.min(parent ? parent.height - 40 : 560, 560)

    /// Times in milliseconds since the epoch; without them the last minute.
    function openFor(wanted, startMoment, endMoment) {
        const last = endMoment ?? Date.now();
        cameras.begin(wanted);
        range.setRange(startMoment ?? last - 60000, last);
        description.text = "";
        creator.text = client.userName;
        group.begin("");
        open();
    }

    onSubmitted: {
        const common = [range.start, range.end, description.text, creator.text, group.editText];
        asked = cameras.cameras;
        if (asked.length === 1) {
            const camera = asked[0];
            noteSent(client.bookmarks.addBookmark(camera.cameraID, camera.locationID,
                                                  camera.relayPath, ...common));
        } else {
            const targets = asked.map(camera => ({
                        CameraID: camera.cameraID,
                        LocationID: camera.locationID,
                        relayPath: camera.relayPath
                    }));
            noteSent(client.bookmarks.addBookmarks(targets, ...common));
        }
    }

    /// Only the cameras that failed stay ticked, so that another try adds nothing twice. A view cell
    /// that could not show its bookmark is no failure here: the bookmark is stored.
    function settleAdd() {
        const failures = client.bench.addFailuresAfter(lastBefore);
        const failed = asked.filter(camera => failures[camera.key] !== undefined);
        const reasons = failed.map(camera => failures[camera.key]
            ? qsTr("%1 answered with code %2").arg(camera.stationName).arg(failures[camera.key])
            : qsTr("%1 did not accept it").arg(camera.stationName));
        cameras.choose(asked.filter(camera => !failed.includes(camera)), false);
        cameras.show(failed[0]);
        client.added = client.bench.bookmarksAddedAfter(lastBefore);
        settle(failed.length === 0 ? "" : qsTr("Not added on %1 of %2 cameras: %3.")
            .arg(failed.length).arg(asked.length).arg([...new Set(reasons)].join(", ")));
    }

    Connections {
        target: dialog.client.plugin
        enabled: dialog.busy
        function onAddBookmarkResponsed() {
            if (dialog.isOwn())
                dialog.settleAdd();
        }
        function onAddBookmarksResponsed() {
            if (dialog.isOwn())
                dialog.settleAdd();
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
        timeZone: dialog.client.timeZone
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
        client: dialog.client
        required: dialog.tried
    }
}
