import QtQml
import Client.Common
import Client.Timeline

/// A view cell's timeline at the plug-in, from its first question to its removal.
QtObject {
    id: feed

    required property AppState app
    required property string uid ///< of the view cell
    required property var camera
    required property VisibleRange range

    /// The plug-in's list model; null when there is none. It dies with the view cell.
    property var model: null
    property bool failed: false ///< a timeline has failed, as far as is known this one

    readonly property real askedFrom: range.askedFrom
    readonly property real askedTo: range.askedTo

    onAskedFromChanged: askSoon.restart()
    onAskedToChanged: askSoon.restart()
    onCameraChanged: open()

    function open() {
        if (!camera)
            return;
        if (!model)
            model = app.bookmarks.getBookmarkModelForTimeline(uid);
        failed = !model;
        app.bookmarks.setTimelineFocusInfo(camera.locationID, camera.relayPath, uid);
        askSoon.restart();
    }

    /// Forgets everything and asks anew.
    function reload() {
        failed = false;
        app.bookmarks.clearTimelineModel(uid);
        askSoon.restart();
    }

    function ask() {
        app.bookmarks.setTimelineBoundary(askedFrom, askedTo, uid);
    }

    function close() {
        askSoon.stop();
        model = null; // nothing here may look at it while it is destroyed
        app.bookmarks.removeTimelineModel(uid);
    }

    /// Panning and zooming change the range many times between two frames.
    readonly property Timer askSoon: Timer {
        interval: 16
        onTriggered: feed.ask()
    }

    readonly property Connections outdated: Connections {
        target: feed.app

        function onTimelinesOutdated() {
            feed.reload();
        }
    }

    /// A timeline has failed, and it is not known yet whether at this station.
    property bool unsettled: false

    readonly property string stationState: app.topology.stationStates[camera.relayPath] ?? ""
    onStationStateChanged: settle()

    /// The answers' signal names no view cell. The state of the station, which follows, shows
    /// whether this one has failed; where the host does not know it, each one may have. A station
    /// that works again is asked again.
    function settle() {
        const failing = stationState === "failing";
        const known = stationState !== "";
        if (unsettled && (failing || !known))
            failed = true;
        else if (failed && known && !failing)
            reload();
        unsettled = unsettled && known && !failing;
    }

    readonly property Connections answers: Connections {
        target: feed.app.plugin

        function onQueryBookmarkForTimelineResponsed(success) {
            feed.unsettled = !success;
            feed.settle();
        }
    }

    Component.onCompleted: open()
    Component.onDestruction: close()
}
