import QtQml
import Client.Common
import Client.Panel
import Integration
import Tour
import Workbench

/// Brings the window into its main states and has a picture taken of each, as soon as what the
/// picture is about is there.
QtObject {
    id: tour

    required property var plugin
    required property WorkbenchContext bench
    required property PictureTaker pictures

    property int position: 0
    /// At the last look. A picture waits for one more, as things take their places a frame later.
    property bool reached: false

    readonly property Main window: Main {
        plugin: tour.plugin
        bench: tour.bench
        remembers: false
    }
    readonly property BookmarkPanel panel: tour.find("bookmarkPanel") as BookmarkPanel
    readonly property string failing: bench.stations[1].relayPath

    /// Each state: name of the picture, what to do, and what must hold (with no answer to come).
    readonly property var states: [
        {
            name: "start",
            enter: () => bench.stations[0].cameras.forEach((camera, i) => find("cell" + i).show(camera)),
            reached: () => panel.query.total > 0
        },
        {
            name: "search",
            enter: () => panel.filter.text = "van",
            reached: () => panel.query.total > 0 && panel.query.total < count() / 2
        },
        {
            name: "grouped-by-camera",
            enter: () => {
                panel.filter.text = "";
                panel.filter.groupKey = "cameraName";
            },
            reached: () => panel.query.total === count()
        },
        {
            name: "add-dialog",
            enter: () => window.addBookmark(),
            reached: () => find("addDialog").opened,
            leave: () => find("addDialog").close()
        },
        {
            name: "help",
            enter: () => find("help").open(),
            reached: () => find("help").opened,
            leave: () => find("help").close()
        },
        {
            name: "traffic",
            enter: () => {
                window.toggleDrawer();
                find("trafficSearch").text = "name:queryAllBookmar";
            },
            reached: () => choosePayload(),
            leave: () => find("trafficSearch").text = ""
        },
        {
            name: "log",
            enter: () => find("drawerTabs").currentIndex = 1,
            reached: () => find("logList").visible
        },
        {
            name: "faults",
            enter: () => find("drawerTabs").currentIndex = 2,
            reached: () => !find("logList").visible
        },
        {
            name: "console",
            enter: () => {
                find("drawerTabs").currentIndex = 4;
                find("consoleTab").choose(find("methodList").model[0]);
            },
            reached: () => find("methodList").visible,
            leave: () => window.toggleDrawer()
        },
        {
            name: "failing-station",
            enter: () => {
                bench.failStation(failing, true);
                find("searchField").forceActiveFocus();
                plugin.queryAllBookmarks();
            },
            reached: () => bench.failedStations.length === 1,
            leave: () => {
                bench.failStation(failing, false);
                plugin.queryAllBookmarks();
            }
        },
        {
            name: "dark",
            enter: () => Theme.dark = true,
            reached: () => bench.failedStations.length === 0,
            leave: () => Theme.dark = false
        },
        { name: "small", enter: () => resize(1024, 640), reached: () => hasSize(1024, 640) },
        { name: "large", enter: () => resize(3840, 2160), reached: () => hasSize(3840, 2160) }
    ]

    function find(name) {
        return pictures.find(window, name);
    }

    function count() {
        return plugin.getBookmarkListByNodeID("").length;
    }

    /// Chooses the first answer in the traffic, once it is filtered.
    function choosePayload() {
        const list = find("trafficList");
        if (list.count === bench.traffic.count)
            return false;
        list.currentIndex = 1 + bench.stations.length;
        find("payloadTree").expand(0);
        return find("payloadTree").rows > 1;
    }

    function resize(width, height) {
        window.width = width;
        window.height = height;
    }

    function hasSize(width, height) {
        return find("cell0").visible && window.contentItem.width === width && window.height === height;
    }

    function advance() {
        const state = states[position];
        const settled = reached;
        reached = bench.outstanding === 0 && state.reached();
        if (!reached || !settled)
            return;
        reached = false;
        pictures.take(window, state.name);
        if (state.leave)
            state.leave();
        position += 1;
        begin();
    }

    function begin() {
        if (position === states.length) {
            clock.stop();
            pictures.finished();
            return;
        }
        patience.restart();
        states[position].enter();
    }

    // Asks again and again, as a state is made of more than signals tell.
    readonly property Timer clock: Timer {
        interval: 50
        repeat: true
        running: true
        onTriggered: tour.advance()
    }
    readonly property Timer patience: Timer {
        interval: 20000
        onTriggered: {
            tour.clock.stop();
            tour.pictures.giveUp(tour.states[tour.position].name);
        }
    }

    Component.onCompleted: begin()
}
