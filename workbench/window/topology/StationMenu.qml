import QtQuick
import QtQuick.Controls
import Workbench

/// What can be done with a station as a whole.
Menu {
    id: menu
    objectName: "stationMenu"

    required property Client client
    property var station: null

    signal recentWanted(var station)
    signal removeAllWanted(var station)
    signal recycleWanted

    function openFor(station, item) {
        menu.station = station;
        popup(item);
    }

    MenuItem {
        text: qsTr("Recent bookmarks…")
        onTriggered: menu.recentWanted(menu.station)
    }
    MenuItem {
        text: qsTr("Recycle settings…")
        onTriggered: menu.recycleWanted()
    }
    MenuSeparator {}
    MenuItem {
        text: menu.client.settingAllowed ? qsTr("Remove all bookmarks…")
                                         : qsTr("Remove all bookmarks (not allowed)")
        enabled: menu.client.settingAllowed
        onTriggered: menu.removeAllWanted(menu.station)
        ToolTip.visible: hovered && !enabled
        ToolTip.text: menu.client.lockReason
    }
}
