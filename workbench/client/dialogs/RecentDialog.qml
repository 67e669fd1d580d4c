pragma ComponentBehavior: Bound
import QtQuick
import QtQuick.Controls
import QtQuick.Layouts
import Client.Common

/// The most recent bookmarks of a station; Enter or a double-click shows one in a view cell.
FormDialog {
    id: dialog

    property var station: null
    property var records: []
    property bool outdated: false ///< the outstanding answer is for another number or station

    objectName: "recentDialog"
    title: station ? qsTr("Recent bookmarks of %1").arg(station.name) : ""
    acceptText: qsTr("Show")
    valid: view.currentIndex >= 0 && view.currentIndex < records.length
    firstField: view
    height: Math.min(parent ? parent.height - 40 : 480, 480)

    function openFor(wanted) {
        station = wanted;
        open();
        ask();
    }

    function ask() {
        records = [];
        outdated = pending > 0;
        if (outdated)
            return;
        begin(1, [station.relayPath]);
        noteSent(app.bookmarks.queryBookmarkForRecent(station.locationID, station.relayPath,
                                                         amount.value));
    }

    onPendingChanged: {
        if (pending === 0 && outdated && visible)
            ask();
    }

    onSubmitted: {
        app.bookmarkWanted(records[view.currentIndex]);
        finish("");
    }

    Connections {
        target: dialog.app.plugin
        enabled: dialog.pending > 0
        function onQueryBookmarkForRecentResponsed(success) {
            if (!dialog.noteSignal() || dialog.pending > 0)
                return;
            dialog.busy = false;
            dialog.error = success ? "" : qsTr("The station did not return its bookmarks.");
            dialog.records = success ? dialog.app.bookmarks.getBookmarkListForRecent() : [];
            view.currentIndex = 0;
        }
    }

    RowLayout {
        spacing: Theme.gap

        Label {
            text: qsTr("How many")
        }
        SpinBox {
            id: amount
            objectName: "recentAmount"
            from: 1
            to: 255
            value: 20
            editable: true
            Accessible.name: qsTr("How many")
            onValueModified: dialog.ask()
        }
    }
    ListView {
        id: view
        objectName: "recentList"
        Layout.fillWidth: true
        Layout.fillHeight: true
        clip: true
        activeFocusOnTab: true
        boundsBehavior: Flickable.StopAtBounds
        model: dialog.records
        Accessible.role: Accessible.List
        Accessible.name: dialog.title
        ScrollBar.vertical: ScrollBar {}
        delegate: ItemDelegate {
            id: row
            required property int index
            required property var modelData
            width: view.width
            padding: 4
            focusPolicy: Qt.NoFocus
            highlighted: ListView.isCurrentItem
            text: qsTr("%1  %2  %3").arg(modelData.displayDateTime).arg(modelData.cameraName)
                .arg(modelData.description || qsTr("(no text)"))
            ToolTip.text: text
            ToolTip.visible: hovered
            ToolTip.delay: 500
            onClicked: view.currentIndex = index
            onDoubleClicked: dialog.submit()
            background: Rectangle {
                color: row.highlighted ? Theme.selection : "transparent"
            }
            contentItem: Label {
                text: row.text
                elide: Text.ElideRight
            }
        }

        Label {
            anchors.centerIn: parent
            visible: dialog.records.length === 0 && !dialog.busy && dialog.error === ""
            color: Theme.faintText
            text: qsTr("The station has no bookmarks.")
        }
    }
}
