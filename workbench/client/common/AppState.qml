import QtQml
import Client.Common

/// What the client's parts share. It calls the plug-in and listens to it, and stores nothing that
/// the plug-in stores.
QtObject {
    id: app

    /// The plug-in's object.
    required property var plugin
    required property Topology topology

    // Known to the host; the plug-in's object has no property for it.
    /// IANA identifier of the server's zone, in which bookmarks have their texts.
    property string timeZone: "UTC"
    property bool settingAllowed: true
    /// Names of the stations that failed to answer the last query, or have not yet.
    property var failedStations: []

    /// The plug-in's object again, under the name that the documents give it.
    readonly property var bookmarks: plugin
    readonly property DateRanges ranges: DateRanges {
        timeZone: app.timeZone
    }
    readonly property bool timeZoneKnown: ranges.zoneKnown

    /// Why actions that change settings are disabled; empty when they are not.
    readonly property string lockReason: settingAllowed ? ""
        : qsTr("The server does not allow this user to change settings.")

    /// Written into bookmarks that are added here.
    property string userName: qsTr("operator")

    /// The camera that was chosen in the topology, as there; null for none.
    property var currentCamera: null

    /// Counts the changes of the plug-in's list of all bookmarks. A page depends on it.
    property int revision: 0

    /// The bookmarks that the user has just added: a map of their cameras' keys and of the start,
    /// end, description, creator and group that they share. Null for none.
    property var added: null

    property int deletedTogether: 0 ///< how many bookmarks were last to be deleted at once

    property bool querying: false ///< a query of all bookmarks has answers to come
    property int partsReceived: 0 ///< stations that have answered it
    property int partsExpected: 0
    property string queriedZone: "" ///< the zone in which it was sent; empty before the first query

    /// Asks the window to show a short message.
    signal notice(string text, bool failure)
    /// To be shown in a view cell.
    signal cameraWanted(var camera)
    /// A display record to be shown in a view cell at its time.
    signal bookmarkWanted(var record)
    /// Timelines show bookmarks as they were before a change.
    signal timelinesOutdated()
    /// The list of all bookmarks is complete, or the user no longer waits for it.
    signal refreshed()

    function refresh() {
        queriedZone = timeZone;
        partsReceived = 0;
        partsExpected = topology.stations.length;
        querying = true; // before the call, from inside of which answers may come
        const sent = bookmarks.queryAllBookmarks();
        revision += 1;
        if (!sent) {
            querying = false;
            notice(qsTr("No station could be asked for its bookmarks."), true);
        }
    }

    /// What is still to come no longer keeps the window busy; it is shown when it comes.
    function stopWaiting() {
        querying = false;
    }

    /// Whether a display record is one of the bookmarks described by a map as in added.
    function isOneOf(record, bookmarks) {
        return bookmarks !== null && bookmarks.keys.includes(topology.keyOf(record))
            && bookmarks.startTimestamp === record.startTimestamp
            && bookmarks.endTimestamp === record.endTimestamp
            && bookmarks.description === record.description
            && bookmarks.creator === record.creator && bookmarks.group === record.group;
    }

    onQueryingChanged: {
        if (!querying)
            refreshed();
    }

    readonly property Connections zone: Connections {
        target: app.ranges

        // Records have the texts of the zone in which they arrived.
        function onTimeZoneChanged() {
            if (!app.ranges.zoneKnown)
                app.notice(qsTr("The server's time zone %1 is unknown here. Bookmarks have no dates and times.")
                           .arg(app.timeZone), true);
            const current = app.queriedZone === "" || app.queriedZone === app.timeZone;
            if (current || (app.querying && app.partsReceived === 0))
                return;
            app.refresh();
            app.timelinesOutdated();
        }
    }

    readonly property Connections answers: Connections {
        target: app.plugin

        function onQueryAllBookmarksResponsed(done) {
            app.partsReceived += 1;
            app.revision += 1;
            if (done)
                app.querying = false;
        }
    }
}
