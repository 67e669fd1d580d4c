pragma ComponentBehavior: Bound
import QtQuick
import QtQuick.Controls
import QtQuick.Layouts
import Client.Common
import Client.Dialogs
import Integration

/// Shows the live traffic or a recording, and the payload of the chosen entry.
ColumnLayout {
    id: tab

    required property AppState app
    required property WorkbenchContext workbench
    required property bool shown ///< a hidden list would create its rows, too
    readonly property OpenedRecording recording: workbench.openedRecording
    readonly property bool live: recording.file === ""
    readonly property TrafficSource source: live ? workbench.recorder : recording
    readonly property TrafficModel traffic: source.traffic

    signal differencesWanted()

    /// Chooses the entry of a line of the recording.
    function showLine(line) {
        const row = filter.rowOf(recording.rowOf(line));
        list.currentIndex = row;
        if (row < 0)
            app.notice(qsTr("The filter hides line %1.").arg(line), true);
        else
            list.positionViewAtIndex(row, ListView.Center);
    }

    function copyPayload() {
        traffic.copyAsJson(filter.sourceRow(list.currentIndex));
    }

    function copyEntry() {
        traffic.copyEntry(filter.sourceRow(list.currentIndex));
    }

    spacing: Theme.gap
    onShownChanged: {
        if (list.currentIndex < 0)
            later.restart();
    }

    SearchFilter {
        id: filter
        source: tab.shown ? tab.traffic : null
        text: bar.text
        hiddenKinds: bar.hiddenKinds
    }

    TrafficColumns {
        id: shared
    }

    Timer {
        id: later
        interval: 0 // once the list has the rows of the recording
        onTriggered: {
            if (tab.shown && tab.recording.firstLine > 0)
                tab.showLine(tab.recording.firstLine);
        }
    }

    Connections {
        target: tab.recording
        function onChanged() {
            list.currentIndex = -1;
            list.following = tab.live;
            if (!tab.live)
                list.positionViewAtBeginning();
        }
        function onCompared() {
            later.restart();
        }
    }

    RecordingBar {
        recording: tab.recording
        visible: !tab.live
        onCompareWanted: compareDialog.openFor(compareDialog.path || openDialog.path)
        onDifferencesWanted: tab.differencesWanted()
        Layout.fillWidth: true
    }
    TrafficBar {
        id: bar
        traffic: tab.traffic
        live: tab.live
        shownCount: filter.count
        error: filter.error
        canCopy: list.currentIndex >= 0
        onCopyWanted: tab.copyPayload()
        onCopyEntryWanted: tab.copyEntry()
        onSaveWanted: saveDialog.openFor(tab.workbench.recorder.newFile())
        onOpenWanted: openDialog.openFor(openDialog.path || saveDialog.path)
        Layout.fillWidth: true
    }
    SplitView {
        Layout.fillWidth: true
        Layout.fillHeight: true

        ColumnLayout {
            spacing: 2
            SplitView.fillWidth: true
            SplitView.minimumWidth: 300

            TrafficHeadings {
                columns: shared
                Layout.fillWidth: true
            }
            TailList {
                id: list
                objectName: "trafficList"
                model: filter
                Accessible.name: qsTr("Traffic")
                Layout.fillWidth: true
                Layout.fillHeight: true
                delegate: TrafficRow { columns: shared }
                Keys.onPressed: event => {
                    if (event.matches(StandardKey.Copy) && currentIndex >= 0)
                        tab.copyPayload();
                    else if (event.key === Qt.Key_C && event.modifiers === (Qt.ControlModifier | Qt.ShiftModifier))
                        tab.copyEntry();
                    else if (event.text === "/")
                        bar.focusSearch();
                }

                Label {
                    anchors.centerIn: parent
                    visible: list.count === 0 && tab.traffic.count > 0
                    color: Theme.faintText
                    text: qsTr("No entry matches.")
                }
            }
        }
        PayloadPane {
            traffic: tab.traffic
            row: filter.sourceRow(list.currentIndex)
            difference: (list.currentItem as TrafficRow)?.difference ?? ""
            SplitView.preferredWidth: Math.min(320, tab.width * 0.28)
            SplitView.minimumWidth: 120
        }
    }

    SaveDialog {
        id: saveDialog
        objectName: "saveDialog"
        app: tab.app
        title: qsTr("Save the traffic")
        fileTitle: qsTr("File, as JSON lines for --replay")
        exists: tab.workbench.recorder.exists(path)
        onSaveWanted: path => finishSave(onlyShown.visible && onlyShown.checked
                                         ? tab.source.saveShown(path, filter) : tab.source.save(path))

        CheckBox {
            id: onlyShown
            objectName: "onlyShown"
            visible: filter.count < tab.traffic.count
            text: qsTr("Only the %1 entries that the filter shows").arg(filter.count)
        }
    }
    SaveDialog {
        id: openDialog
        objectName: "openDialog"
        app: tab.app
        title: qsTr("Open a recording")
        acceptText: qsTr("Open")
        fileTitle: qsTr("File, as the traffic was saved")
        onSaveWanted: path => finish(tab.recording.open(path))
    }
    SaveDialog {
        id: compareDialog
        objectName: "compareDialog"
        app: tab.app
        title: qsTr("Compare with another recording")
        acceptText: qsTr("Compare")
        fileTitle: qsTr("File, as the traffic was saved")
        onSaveWanted: path => finish(tab.recording.compareWith(path))
    }
}
