import QtQuick
import QtQuick.Controls
import QtQuick.Layouts
import Workbench

/// Adds a bookmark on one camera, or the same on many.
FormDialog {
    id: dialog

    required property KnownGroups known

    readonly property bool inOrder: start.moment === undefined || end.moment === undefined
        || start.moment <= end.moment

    objectName: "addDialog"
    title: qsTr("Add a bookmark")
    acceptText: cameras.cameras.length > 1 ? qsTr("Add %1").arg(cameras.cameras.length)
                                           : qsTr("Add")
    valid: cameras.cameras.length > 0 && start.moment !== undefined && end.moment !== undefined
           && inOrder
    firstField: description
    height: Math.min(parent ? parent.height - 40 : 560, 560)

    /// Times in milliseconds since the epoch; without them the last minute.
    function openFor(wanted, startMoment, endMoment) {
        const last = endMoment ?? Date.now();
        cameras.begin(wanted);
        end.setMoment(last);
        start.setMoment(startMoment ?? last - 60000);
        description.text = "";
        creator.text = client.userName;
        group.begin("");
        open();
    }

    onSubmitted: {
        const common = [start.moment, end.moment, description.text, creator.text, group.editText];
        const wanted = cameras.cameras;
        if (wanted.length === 1) {
            const camera = wanted[0];
            noteSent(client.bookmarks.addBookmark(camera.cameraID, camera.locationID,
                                                  camera.relayPath, ...common));
        } else {
            const targets = wanted.map(camera => ({
                        CameraID: camera.cameraID,
                        LocationID: camera.locationID,
                        relayPath: camera.relayPath
                    }));
            noteSent(client.bookmarks.addBookmarks(targets, ...common));
        }
    }

    DateTimeTexts {
        id: texts
        timeZone: dialog.client.bench.serverTimeZone
    }
    Connections {
        target: dialog.client.plugin
        enabled: dialog.busy
        function onAddBookmarkResponsed(success) {
            dialog.noteOutcome(success ? "" : qsTr("The bookmark was not added, or a view cell of "
                                                   + "its camera could not show it."));
        }
        function onAddBookmarksResponsed(failCamNameList) {
            dialog.noteOutcome(failCamNameList.length === 0 ? ""
                : qsTr("Not added on: %1").arg(failCamNameList.join(", ")));
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
    RowLayout {
        spacing: Theme.margin

        DateTimeField {
            id: start
            objectName: "addStart"
            title: qsTr("Start")
            texts: texts
        }
        DateTimeField {
            id: end
            objectName: "addEnd"
            title: qsTr("End")
            texts: texts
            problem: dialog.inOrder ? "" : qsTr("The end is before the start")
        }
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
    }
}
