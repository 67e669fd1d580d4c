import QtQml
import Client.Common
import Client.Timeline

/// A view cell's timeline at the plug-in, from its first question to its removal.
QtObject {
    id: feed

    required property Client client
    required property string uid ///< of the view cell
    required property var camera
    required property VisibleRange range

    /// The plug-in's list model; null when there is none. It dies with the view cell.
    property var model: null
    property bool waiting: false ///< the station has something to answer
    property bool failed: false  ///< the last answer to a timeline was none

    readonly property real askedFrom: range.askedFrom
    readonly property real askedTo: range.askedTo

    onAskedFromChanged: askSoon.restart()
    onAskedToChanged: askSoon.restart()
    onCameraChanged: open()

    function open() {
        if (!camera)
            return;
        if (!model)
            model = client.bookmarks.getBookmarkModelForTimeline(uid);
        failed = !model;
        client.bookmarks.setTimelineFocusInfo(camera.locationID, camera.relayPath, uid);
        askSoon.restart();
    }

    /// Forgets everything and asks anew.
    function reload() {
        failed = false;
        client.bookmarks.clearTimelineModel(uid);
        askSoon.restart();
    }

    function ask() {
        client.bookmarks.setTimelineBoundary(askedFrom, askedTo, uid);
    }

    function close() {
        askSoon.stop();
        model = null; // nothing here may look at it while it is destroyed
        client.bookmarks.removeTimelineModel(uid);
    }

    /// Panning and zooming change the range many times between two frames.
    readonly property Timer askSoon: Timer {
        interval: 16
        onTriggered: feed.ask()
    }

    readonly property Connections outdated: Connections {
        target: feed.client

        function onTimelinesOutdated() {
            feed.reload();
        }
    }

    readonly property Connections traffic: Connections {
        target: feed.client.bench

        function onTrafficPassed() {
            feed.waiting = feed.client.bench.isAwaited(feed.camera.relayPath);
        }
        function onStationStatesChanged() {
            feed.settle();
        }
    }

    /// A timeline has failed, and it is not known yet whether at this station.
    property bool unsettled: false

    /// The answers' signal names no view cell: the state of the station, which follows, tells
    /// whether this one has failed. One that works again is asked again.
    function settle() {
        const failing = client.bench.stationStates[camera.relayPath] === "failing";
        if (failing && unsettled)
            failed = true;
        else if (failed && !failing)
            reload();
        unsettled = unsettled && !failing;
    }

    readonly property Connections answers: Connections {
        target: feed.client.plugin

        function onQueryBookmarkForTimelineResponsed(success) {
            feed.unsettled = !success;
            feed.settle();
        }
    }

    Component.onCompleted: open()
    Component.onDestruction: close()
}
