import QtQml
import Client.Common
import Client.Panel
import Integration
import Tour
import Workbench

/// Brings the window into its main states and takes a picture of each once it is reached.
QtObject {
    id: tour

    required property var plugin
    required property WorkbenchContext workbench
    required property PictureTaker pictures

    property int position: 0
    /// The last check found the state reached. The picture is taken after the next check, because
    /// items get their positions a frame later.
    property bool reached: false

    readonly property Main window: Main {
        plugin: tour.plugin
        workbench: tour.workbench
        remembers: false
    }
    readonly property BookmarkPanel panel: tour.find("bookmarkPanel") as BookmarkPanel
    readonly property string failing: workbench.stations[1].relayPath

    /// Each state: name of the picture, function to enter the state, condition for the picture (in
    /// addition, no answer may be outstanding), and optionally a function to leave the state.
    readonly property var states: [
        {
            name: "start",
            enter: () => workbench.stations[0].cameras.forEach((camera, i) => find("cell" + i).show(camera)),
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
                workbench.failStation(failing, true);
                find("searchField").forceActiveFocus();
                plugin.queryAllBookmarks();
            },
            reached: () => workbench.failedStations.length === 1,
            leave: () => {
                workbench.failStation(failing, false);
                plugin.queryAllBookmarks();
            }
        },
        {
            name: "dark",
            enter: () => Theme.dark = true,
            reached: () => workbench.failedStations.length === 0,
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
        if (list.count === workbench.traffic.count)
            return false;
        list.currentIndex = 1 + workbench.stations.length;
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
        const reachedBefore = reached;
        reached = workbench.outstanding === 0 && state.reached();
        if (!reached || !reachedBefore)
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
        timeout.restart();
        states[position].enter();
    }

    // Polls, because no signal reports that a state is reached.
    readonly property Timer clock: Timer {
        interval: 50
        repeat: true
        running: true
        onTriggered: tour.advance()
    }
    readonly property Timer timeout: Timer {
        interval: 20000
        onTriggered: {
            tour.clock.stop();
            tour.pictures.giveUp(tour.states[tour.position].name);
        }
    }

    Component.onCompleted: begin()
}
