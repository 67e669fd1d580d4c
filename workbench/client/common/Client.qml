import QtQml

/// The client around the plug-in's object: what the window's parts share. It calls the plug-in and
/// listens to it, and keeps nothing that the plug-in keeps.
QtObject {
    id: client

    /// The plug-in's object, as the client offers it to QML.
    required property var plugin
    required property var bench

    /// The plug-in's object again, under the name that the documents give it.
    readonly property var bookmarks: plugin

    /// Written into bookmarks that are added here.
    property string userName: qsTr("operator")

    /// The camera that was chosen in the tree, null for none: a map of cameraID, locationID,
    /// relayPath, key, name and stationName.
    property var currentCamera: null

    /// IANA identifier of the server's zone, in which bookmarks have their texts.
    readonly property string timeZone: bench.clientTimeZone
    readonly property bool timeZoneKnown: bench.isTimeZone(timeZone)

    readonly property bool settingAllowed: bench.settingPermission
    /// Why actions that change settings are disabled; empty when they are not.
    readonly property string lockReason: settingAllowed ? ""
        : qsTr("The server does not allow this user to change settings.")

    /// Counts the changes of the plug-in's list of all bookmarks. A page depends on it.
    property int revision: 0

    /// Bookmarks that the user has just added, as "relay path/identifier"; the list frames them.
    property var added: []

    property int deletedTogether: 0 ///< how many bookmarks were last to be deleted at once

    property bool querying: false ///< a query of all bookmarks has answers to come
    property int partsReceived: 0 ///< stations that have answered it
    property int partsExpected: 0
    /// Names of the stations that failed to answer it, or have not yet.
    readonly property var failedStations: bench.failedStations

    /// Something to tell the user, briefly.
    signal notice(string text, bool failure)
    /// To be shown in a view cell.
    signal cameraWanted(var camera)
    /// A display record to be shown in a view cell at its time.
    signal bookmarkWanted(var record)
    /// Timelines show bookmarks as they were before a change.
    signal timelinesOutdated()

    function refresh() {
        partsReceived = 0;
        partsExpected = bench.stations.length;
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

    /// The camera with that key, as in currentCamera; null when there is none.
    function cameraWithKey(key) {
        for (const station of bench.stations) {
            for (const camera of station.cameras) {
                if (camera.key === key)
                    return camera;
            }
        }
        return null;
    }

    readonly property Connections zone: Connections {
        target: client.bench

        // Records keep the texts of the zone in which they arrived.
        function onClientTimeZoneChanged() {
            if (!client.timeZoneKnown)
                client.notice(qsTr("The server's time zone %1 is unknown here. Bookmarks have no dates and times.")
                              .arg(client.timeZone), true);
            if (client.querying && client.partsReceived === 0)
                return;
            client.refresh();
            client.timelinesOutdated();
        }
    }

    readonly property Connections answers: Connections {
        target: client.plugin

        function onQueryAllBookmarksResponsed(done) {
            client.partsReceived += 1;
            client.revision += 1;
            if (done)
                client.querying = false;
        }
    }
}
