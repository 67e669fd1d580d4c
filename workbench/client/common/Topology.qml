import QtQml

/// The stations and cameras of the host's topology.
QtObject {
    id: topology

    /// Maps of relayPath, name, locationID and cameras; cameras are maps of cameraID, name, key,
    /// locationID, relayPath and stationName.
    property var stations: []
    /// "connected", "slow", "failing" or "disconnected" by relay path; empty if the host does not
    /// know the states.
    property var stationStates: ({})

    readonly property var cameras: {
        const all = [];
        for (const station of stations)
            all.push(...station.cameras);
        return all;
    }

    /// @return the camera key for a map of relayPath and cameraID
    function keyOf(record) {
        return record.relayPath ? record.relayPath + "/" + record.cameraID : record.cameraID;
    }

    /// @return the camera with a key, or null
    function cameraWithKey(key) {
        return cameras.find(camera => camera.key === key) ?? null;
    }

    /// @return the names of the stations with these relay paths, without duplicates
    function stationNames(relayPaths) {
        return stations.filter(station => relayPaths.includes(station.relayPath))
                       .map(station => station.name);
    }
}
