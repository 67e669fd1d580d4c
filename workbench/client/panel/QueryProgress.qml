import QtQuick
import QtQuick.Controls
import QtQuick.Layouts
import Client.Common

/// Shows the progress of a query of all bookmarks, and afterwards the stations that failed.
RowLayout {
    id: progress

    required property AppState app
    required property var failedStations

    readonly property string gap: app.querying || failedStations.length === 0 ? ""
        : qsTr("Failed or not answered: %1").arg(failedStations.join(", "))

    readonly property bool slow: late.done && app.querying

    visible: slow || gap !== ""
    spacing: Theme.gap

    // Show no progress for quick answers.
    Timer {
        id: late
        property bool done: false
        interval: 300
        running: progress.app.querying
        onRunningChanged: if (running) done = false
        onTriggered: done = true
    }
    ProgressBar {
        visible: progress.slow
        Layout.preferredWidth: 70
        to: progress.app.partsExpected
        value: progress.app.partsReceived
        Accessible.name: label.text
    }
    Label {
        id: label
        objectName: "queryProgress"
        Layout.fillWidth: true
        elide: Text.ElideRight
        color: progress.slow ? Theme.text : Theme.failure
        text: progress.slow ? qsTr("%1 of %2 stations").arg(progress.app.partsReceived)
                            .arg(progress.app.partsExpected) : progress.gap
        ToolTip.text: text
        ToolTip.visible: truncated && hover.hovered
        HoverHandler {
            id: hover
        }
    }
    ToolButton {
        objectName: "stopWaiting"
        visible: progress.slow
        text: qsTr("Cancel")
        focusPolicy: Qt.StrongFocus
        ToolTip.text: qsTr("Stop waiting; later answers are still shown")
        ToolTip.visible: hovered
        onClicked: progress.app.stopWaiting()
    }
}
