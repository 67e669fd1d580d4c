import QtQuick
import Tessaline

/// Calls a method and shows the result that its signal reports.
Item {
    id: root

    readonly property var camera: topology.stations[0].cameras[0] // qmllint disable unqualified

    TessalinePlugin {
        id: plugin
        target: bookmarks // qmllint disable unqualified
        onAddBookmarkResponsed: success => root.show(success ? "The bookmark is stored."
                                                             : "The station did not store the bookmark.")
    }

    function show(text: string): void {
        outcome.text = text;
        print(text);
    }

    Component.onCompleted: {
        const end = Date.now();
        // The signal may come before the call returns, so set what its handler reads first.
        const sent = plugin.addBookmark(camera.cameraID, camera.locationID, camera.relayPath,
                                        end - 30000, end, "Added by example 01", "developer", "");
        if (!sent)
            show("No command was sent, and no signal follows.");
    }

    Text {
        id: outcome
        anchors.centerIn: parent
        text: "Waiting for the station"
    }
}
