import QtQuick
import QtQuick.Controls
import QtQuick.Layouts
import Client.Common
import Integration

/// What goes wrong: at each station, and at the server to which the client is connected.
ColumnLayout {
    id: tab

    required property WorkbenchContext bench

    spacing: Theme.gap

    ServerBar {
        bench: tab.bench
        Layout.fillWidth: true
    }
    ListView {
        id: list
        objectName: "faultsList"
        model: tab.bench.faults
        clip: true
        boundsBehavior: Flickable.StopAtBounds
        Accessible.name: qsTr("Faults")
        Layout.fillWidth: true
        Layout.fillHeight: true
        header: FaultsHeading { }
        delegate: FaultsRow { }

        ScrollBar.vertical: ScrollBar { }
    }
}
