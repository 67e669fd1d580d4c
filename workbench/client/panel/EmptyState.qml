import QtQuick
import QtQuick.Controls
import QtQuick.Layouts
import Client.Common

/// Shown in place of an empty page: the reason, and a button for the next step.
ColumnLayout {
    id: empty

    required property AppState app
    required property BookmarkFilter filter
    required property bool anyBookmarks
    required property var failedStations

    spacing: Theme.gap

    Label {
        objectName: "emptyReason"
        Layout.fillWidth: true
        horizontalAlignment: Text.AlignHCenter
        wrapMode: Text.Wrap
        color: Theme.faintText
        text: empty.anyBookmarks ? qsTr("No bookmark matches.")
            : empty.app.querying ? qsTr("Waiting for the stations' answers.")
            : empty.failedStations.length > 0
            ? qsTr("No bookmarks: %1 failed or has not answered.")
                .arg(empty.failedStations.join(", "))
            : qsTr("There are no bookmarks yet.")
    }
    Button {
        objectName: "clearFilters"
        Layout.alignment: Qt.AlignHCenter
        visible: empty.anyBookmarks && empty.filter.active
        text: qsTr("Clear filters")
        onClicked: empty.filter.clear()
    }
    Button {
        objectName: "askAgain"
        Layout.alignment: Qt.AlignHCenter
        visible: !empty.anyBookmarks && !empty.app.querying
        text: qsTr("Ask again")
        onClicked: empty.app.refresh()
    }
}
