import QtQml

/// Suggests arguments, by the names of parameters.
QtObject {
    id: defaults

    required property var workbench
    readonly property var camera: workbench.stations[0].cameras[0]

    function textOf(parameter) {
        const now = Date.now();
        const known = {
            cameraID: camera.cameraID, locationID: camera.locationID, relayPath: camera.relayPath,
            nodeID: camera.key, viewCellUID: "console", creator: "console",
            desc: "Added in the console", recentCnt: 10, reserveHour: 72, enableRecycle: true,
            startTimestamp: now - 60000, endTimestamp: now, headBoundTs: now - 3600000,
            tailBoundTs: now, startDateTime: dateTime(now - 60000), endDateTime: dateTime(now),
            camIdList: [camera.key],
            targetList: [{ CameraID: camera.cameraID, LocationID: camera.locationID,
                           relayPath: camera.relayPath }],
            deleteList: [{ BookmarkID: "", relayPath: camera.relayPath }],
            filterMap: { text: "", startTimestamp: 0, endTimestamp: now, groupKey: "displayDate",
                         ascending: false, pageNumber: 0 }
        }[parameter.name];
        if (known === undefined)
            return "";
        return typeof known === "object" ? JSON.stringify(known) : String(known);
    }

    function dateTime(time) {
        return Qt.formatDateTime(new Date(time), "yyyy/MM/dd hh:mm:ss");
    }
}
