import QtQml
import Client.Common

/// The state that the client's parts share. Bookmarks stay in the plug-in.
QtObject {
    id: app

    /// The plug-in's object.
    required property var plugin
    required property Topology topology

    // The host sets these properties; the plug-in's object has none for them.
    /// IANA identifier of the server's zone, for the texts of bookmarks.
    property string timeZone: "UTC"
    property bool settingAllowed: true
    /// Names of the stations that failed the last query of all bookmarks or have not answered it.
    property var failedStations: []

    /// The plug-in's object under the name of the documentation.
    readonly property var bookmarks: plugin
    readonly property DateRanges ranges: DateRanges {
        timeZone: app.timeZone
    }
    readonly property bool timeZoneKnown: ranges.zoneKnown

    /// The reason why actions that change settings are disabled; empty if they are enabled.
    readonly property string lockReason: settingAllowed ? ""
        : qsTr("The server does not allow this user to change settings.")

    /// The default creator of new bookmarks.
    property string userName: qsTr("operator")

    /// The camera selected in the topology, a map as in Topology; null for none.
    property var currentCamera: null

    /// Counts the changes of the plug-in's list of all bookmarks, so that bindings can depend on it.
    property int revision: 0

    /// The bookmarks of the last addition: a map of "keys", the camera keys, and of the values that
    /// they share (startTimestamp, endTimestamp, description, creator, group). Null for none.
    property var added: null

    property int deletedTogether: 0 ///< number of bookmarks in the last deletion of several

    property bool querying: false ///< a query of all bookmarks has outstanding answers
    property int partsReceived: 0 ///< number of answers to it
    property int partsExpected: 0
    property string queriedZone: "" ///< timeZone at the last query; empty before the first one

    /// Asks the window to show a short message.
    signal notice(string text, bool failure)
    /// Asks to show a camera in a view cell.
    signal cameraWanted(var camera)
    /// Asks to show a display record in a view cell, at its start.
    signal bookmarkWanted(var record)
    /// Bookmarks have changed, so timelines must be loaded again.
    signal timelinesOutdated()
    /// The query of all bookmarks has ended, or the user stopped waiting.
    signal refreshed()

    function refresh() {
        queriedZone = timeZone;
        partsReceived = 0;
        partsExpected = topology.stations.length;
        querying = true; // before the call, because answers may come inside it
        const sent = bookmarks.queryAllBookmarks();
        revision += 1;
        if (!sent) {
            querying = false;
            notice(qsTr("The bookmarks could not be queried: no station accepted the command. Try again later."), true);
        }
    }

    /// Ends the display of progress. Later answers still update the list.
    function stopWaiting() {
        querying = false;
    }

    /// @return true if a display record is one of the bookmarks in a map as in added
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

        // Records keep the texts of the zone at their arrival, so a new zone needs a new query.
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
