pragma ComponentBehavior: Bound
import QtQuick
import QtQuick.Controls
import QtQuick.Layouts
import Client.Common
import Client.Dialogs
import Integration

/// What passed between QML, plug-in and host, and the payload of the chosen entry.
ColumnLayout {
    id: tab

    required property AppState app
    required property WorkbenchContext bench
    required property bool shown ///< rows that nobody sees would be made all the same
    readonly property Recorder recorder: bench.recorder
    readonly property TrafficModel traffic: bench.traffic

    function copyPayload() {
        traffic.copyAsJson(filter.sourceRow(list.currentIndex));
    }

    function copyEntry() {
        traffic.copyEntry(filter.sourceRow(list.currentIndex));
    }

    spacing: Theme.gap

    SearchFilter {
        id: filter
        source: tab.shown ? tab.traffic : null
        text: bar.text
        hiddenKinds: bar.hiddenKinds
    }

    TrafficColumns {
        id: shared
    }

    TrafficBar {
        id: bar
        traffic: tab.traffic
        shownCount: filter.count
        error: filter.error
        canCopy: list.currentIndex >= 0
        onCopyWanted: tab.copyPayload()
        onCopyEntryWanted: tab.copyEntry()
        onSaveWanted: saveDialog.openFor(tab.recorder.newFile())
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
            }
        }
        PayloadPane {
            traffic: tab.traffic
            row: filter.sourceRow(list.currentIndex)
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
        exists: tab.recorder.exists(path)
        onSaveWanted: path => finish(onlyShown.visible && onlyShown.checked
                                     ? tab.recorder.saveShown(path, filter) : tab.recorder.save(path))

        CheckBox {
            id: onlyShown
            objectName: "onlyShown"
            visible: filter.count < tab.traffic.count
            text: qsTr("Only the %1 entries that the filter shows").arg(filter.count)
        }
    }
}
