import QtQuick
import QtQuick.Controls
import Client.Common

/// The menu with the actions of a station.
Menu {
    id: menu
    objectName: "stationMenu"

    required property AppState app
    property var station: null

    contentWidth: Math.max(200, removeAll.implicitWidth)

    signal recentWanted(var station)
    signal removeAllWanted(var station)
    signal recycleWanted

    function openFor(station, item) {
        menu.station = station;
        popup(item, Theme.margin, item.height); // at the item: the menu may be opened by key
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
        id: removeAll
        // The text has the reason, because a disabled item shows no tooltip.
        text: enabled ? qsTr("Remove all bookmarks…")
                      : qsTr("Remove all bookmarks…\n%1").arg(menu.app.lockReason)
        enabled: menu.app.settingAllowed
        onTriggered: menu.removeAllWanted(menu.station)
    }
}
