import QtQml
import Client.Common
import Client.Timeline

/// Creates, loads and removes a view cell's timeline in the plug-in.
QtObject {
    id: feed

    required property AppState app
    required property string uid ///< of the view cell
    required property var camera
    required property VisibleRange range

    /// The plug-in's list model; null if there is none. removeTimelineModel() destroys it.
    property var model: null
    property bool failed: false ///< a timeline failed, probably this one

    readonly property real requestedFrom: range.requestedFrom
    readonly property real requestedTo: range.requestedTo

    onRequestedFromChanged: requestTimer.restart()
    onRequestedToChanged: requestTimer.restart()
    onCameraChanged: open()

    function open() {
        if (!camera)
            return;
        if (!model)
            model = app.bookmarks.getBookmarkModelForTimeline(uid);
        failed = !model;
        app.bookmarks.setTimelineFocusInfo(camera.locationID, camera.relayPath, uid);
        requestTimer.restart();
    }

    /// Clears the timeline and loads it again.
    function reload() {
        failed = false;
        app.bookmarks.clearTimelineModel(uid);
        requestTimer.restart();
    }

    function requestRange() {
        app.bookmarks.setTimelineBoundary(requestedFrom, requestedTo, uid);
    }

    function close() {
        requestTimer.stop();
        model = null; // before it is destroyed, so that nothing here reads it
        app.bookmarks.removeTimelineModel(uid);
    }

    /// Panning and zooming change the range many times between two frames; request it once.
    readonly property Timer requestTimer: Timer {
        interval: 16
        onTriggered: feed.requestRange()
    }

    readonly property Connections outdated: Connections {
        target: feed.app

        function onTimelinesOutdated() {
            feed.reload();
        }
    }

    /// A timeline query failed, perhaps at another station.
    property bool unassignedFailure: false

    readonly property string stationState: app.topology.stationStates[camera.relayPath] ?? ""
    onStationStateChanged: updateFailed()

    /// The signal names no view cell. The station's state, which changes after the signal, shows
    /// whether this timeline failed; without states any timeline may have failed. Reloads when the
    /// station works again.
    function updateFailed() {
        const failing = stationState === "failing";
        const known = stationState !== "";
        if (unassignedFailure && (failing || !known))
            failed = true;
        else if (failed && known && !failing)
            reload();
        unassignedFailure = unassignedFailure && known && !failing;
    }

    readonly property Connections answers: Connections {
        target: feed.app.plugin

        function onQueryBookmarkForTimelineResponsed(success) {
            feed.unassignedFailure = !success;
            feed.updateFailed();
        }
    }

    Component.onCompleted: open()
    Component.onDestruction: close()
}
