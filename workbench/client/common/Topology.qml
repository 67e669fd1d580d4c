import QtQml

/// The stations and cameras of the host's topology.
QtObject {
    id: topology

    /// Maps of relayPath, name, locationID and cameras; cameras are maps of cameraID, name, key,
    /// locationID, relayPath and stationName.
    property var stations: []
    /// "connected", "slow", "failing" or "disconnected" by relay path; a host that does not know a
    /// station's state leaves it out.
    property var stationStates: ({})

    readonly property var cameras: {
        const all = [];
        for (const station of stations)
            all.push(...station.cameras);
        return all;
    }

    /// The key of a camera, from a map of relayPath and cameraID.
    function keyOf(record) {
        return record.relayPath ? record.relayPath + "/" + record.cameraID : record.cameraID;
    }

    /// The camera with a key; null when there is none.
    function cameraWithKey(key) {
        return cameras.find(camera => camera.key === key) ?? null;
    }

    /// Names of the stations with these relay paths, each once.
    function stationNames(relayPaths) {
        return stations.filter(station => relayPaths.includes(station.relayPath))
                       .map(station => station.name);
    }
}
