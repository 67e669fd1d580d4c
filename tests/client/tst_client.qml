import QtQuick
import QtQuick.Layouts
import QtTest
import Client.Common
import Client.Dialogs
import Client.Panel
import Client.Timeline
import Client.Topology

/// Tests the client's parts with the plug-in's object and a topology, without the workbench and its
/// stations.
Item {
    id: client

    readonly property var cameras: [["1", "Gate"], ["2", "Crane"]].map(([id, name]) => ({
                cameraID: id,
                name: name,
                key: "A/" + id,
                locationID: "l",
                relayPath: "A",
                stationName: "Harbour"
            }))

    width: 1200
    height: 800

    AppState {
        id: app
        plugin: pluginObject
        topology: Topology {
            stations: [{ relayPath: "A", name: "Harbour", locationID: "l", cameras: client.cameras }]
        }
    }
    ResultNotifier {
        app: app
    }
    RowLayout {
        anchors.fill: parent

        TopologyPane {
            app: app
            Layout.fillHeight: true
        }
        CellGrid {
            id: grid
            app: app
            Layout.fillWidth: true
            Layout.fillHeight: true
        }
        BookmarkPanel {
            id: panel
            app: app
            onDeleteWanted: (shown, hidden) => dialogs.remove(shown, hidden)
            Layout.fillHeight: true
            Layout.preferredWidth: 400
        }
    }
    Dialogs {
        id: dialogs
        app: app
    }

    TestCase {
        name: "Client"
        when: windowShown

        function find(name) {
            let top = client;
            while (top.parent)
                top = top.parent;
            return findChild(top, name) || findChild(dialogs, name);
        }

        function marks() {
            return findChild(grid.activeCell, "timelineBar")?.marks.rowCount() ?? 0;
        }

        function init() {
            const firstID = () => find("bookmarkList").page.recordAt(0).bookmarkID;
            const oldID = firstID();
            server.reset(""); // with new identifiers
            app.refresh();
            tryVerify(() => firstID() !== oldID);
            tryCompare(find("pageText"), "text", "1 to 3 of 3");
        }

        function cleanup() {
            for (const dialog of ["addDialog", "deleteDialog"])
                find(dialog).close();
            grid.activeCell.clear(); // its timeline has the old identifiers
        }

        function test_pageShowsRecords() {
            const record = find("bookmarkList").page.recordAt(0);
            compare([record.description, record.cameraName, record.displayTimeRange],
                    ["stored 3", "Harbour - Gate", "00:03:00 - 00:03:30"]);
        }

        function test_pageShowsAddedBookmark() {
            dialogs.addFor(client.cameras, 600000, 660000);
            tryCompare(find("addDialog"), "opened", true);
            keyClick(Qt.Key_Return);
            tryCompare(find("addDialog"), "visible", false);
            tryCompare(find("pageText"), "text", "1 to 5 of 5");
            const page = find("bookmarkList").page;
            compare(page.recordsBetween(0, 4).filter(record => app.isOneOf(record, app.added)).length, 2);
        }

        function test_failedCameraStaysInTheDialog() {
            server.reset("2");
            dialogs.addFor(client.cameras, 600000, 660000);
            tryCompare(find("addDialog"), "opened", true);
            keyClick(Qt.Key_Return);
            tryCompare(find("addDialog"), "error", "Not added on 1 of 2 cameras: Harbour - Crane");
            compare(find("chosenCameras").text, "Harbour - Crane");
            compare(server.descriptions().length, 4);
        }

        function test_pageHidesDeletedBookmark() {
            dialogs.remove([find("bookmarkList").page.recordAt(0)]);
            tryCompare(find("deleteDialog"), "opened", true);
            keyClick(Qt.Key_Return);
            tryCompare(find("pageText"), "text", "1 to 2 of 2");
            compare(server.descriptions(), ["stored 1", "stored 2"]);
        }

        function test_timelineShowsMarks() {
            app.bookmarkWanted(find("bookmarkList").page.recordAt(1));
            compare(grid.activeCell.camera.key, "A/1");
            tryVerify(() => marks() === 3);
            dialogs.remove([find("bookmarkList").page.recordAt(1)]);
            tryCompare(find("deleteDialog"), "opened", true);
            keyClick(Qt.Key_Return);
            tryVerify(() => marks() === 2);
        }

        /// Without states of stations in the topology any timeline may have failed.
        function test_timelineOffersRetryAfterAnyFailure() {
            server.reset("QueryBookmarkForTimeline");
            const cell = grid.showCamera(client.cameras[0]);
            cell.goTo(100000000, 200000000); // times that are not loaded
            tryCompare(findChild(cell, "cellStatus"), "text", "a timeline failed");
            server.reset("");
            cell.goTo(60000, 180000);
            mouseClick(findChild(cell, "retry"));
            tryVerify(() => marks() === 3);
            compare(findChild(cell, "cellStatus").text, "playing");
        }

        function test_clickInTopologySelectsCamera() {
            mouseClick(find("camera A/2"));
            tryCompare(find("pageText"), "text", "none");
            mouseClick(find("camera A/2"));
        }
    }
}
