import QtQuick
import QtQuick.Controls
import QtQuick.Layouts
import Client.Common

/// The bar at the top, with the actions of the whole window.
ToolBar {
    id: bar

    required property AppState app
    property bool drawerOpen: false

    signal addWanted
    signal drawerToggled
    signal helpWanted

    RowLayout {
        anchors { fill: parent; leftMargin: Theme.margin; rightMargin: Theme.margin }
        spacing: Theme.gap

        Label {
            text: qsTr("Tessaline workbench")
            font { bold: true; pixelSize: Theme.largeText }
        }
        Label {
            objectName: "serverTime"
            text: bar.app.timeZoneKnown ? qsTr("server time: %1").arg(bar.app.timeZone)
                : qsTr("server time: unknown zone %1, no dates and times").arg(bar.app.timeZone)
            color: bar.app.timeZoneKnown ? Theme.faintText : Theme.warning
            elide: Text.ElideRight
            Layout.fillWidth: true
            Layout.leftMargin: Theme.margin
        }
        Label {
            visible: !bar.app.settingAllowed
            text: qsTr("no setting permission")
            color: Theme.warning
            HoverHandler { id: lockHover }
            ToolTip.visible: lockHover.hovered
            ToolTip.text: bar.app.lockReason
        }
        BarButton {
            text: qsTr("Add bookmark…")
            hint: qsTr("Add a bookmark on one or many cameras (Ctrl+N)")
            onClicked: bar.addWanted()
        }
        BarButton {
            objectName: "refresh"
            text: qsTr("Refresh")
            hint: qsTr("Query the bookmarks of all stations again (F5)")
            onClicked: bar.app.refresh()
        }
        BarButton {
            text: qsTr("Integration")
            checked: bar.drawerOpen
            checkable: true
            hint: qsTr("Traffic, log and faults (F12)")
            onClicked: bar.drawerToggled()
        }
        BarButton {
            text: Theme.dark ? qsTr("Light") : qsTr("Dark")
            hint: qsTr("Light or dark colours (Ctrl+D)")
            onClicked: Theme.dark = !Theme.dark
        }
        BarButton {
            text: "?"
            hint: qsTr("All keys (F1 or ?)")
            Accessible.name: qsTr("Help")
            onClicked: bar.helpWanted()
        }
    }
}
