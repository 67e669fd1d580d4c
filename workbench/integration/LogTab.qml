import QtQuick
import QtQuick.Controls
import QtQuick.Layouts
import Client.Common
import Integration

/// Shows and searches the lines of the host's logging library.
ColumnLayout {
    id: tab

    required property LogModel log

    function copyLine() {
        log.copy(filter.sourceRow(list.currentIndex));
    }

    spacing: Theme.gap

    SearchFilter {
        id: filter
        source: tab.log
        text: search.appliedText
    }

    RowLayout {
        spacing: Theme.gap

        SearchField {
            id: search
            objectName: "logSearch"
            placeholderText: qsTr("Search the log")
            Layout.preferredWidth: 220
        }
        Label {
            text: qsTr("%1 of %2").arg(filter.count).arg(tab.log.count)
            color: Theme.faintText
            Layout.fillWidth: true
        }
        Button {
            objectName: "copyLine"
            text: qsTr("Copy")
            enabled: list.currentIndex >= 0
            ToolTip.text: qsTr("Copy the chosen line (Ctrl+C)")
            ToolTip.visible: hovered
            onClicked: tab.copyLine()
        }
        Button {
            text: qsTr("Clear")
            onClicked: tab.log.clear()
        }
    }
    TailList {
        id: list
        objectName: "logList"
        model: filter
        Accessible.name: qsTr("Log")
        Layout.fillWidth: true
        Layout.fillHeight: true
        delegate: LogRow { }
        Keys.onPressed: event => {
            if (event.matches(StandardKey.Copy) && currentIndex >= 0)
                tab.copyLine();
            else if (event.text === "/")
                search.forceActiveFocus();
        }

        Label {
            anchors.centerIn: parent
            visible: list.count === 0
            color: Theme.faintText
            text: search.appliedText === "" ? qsTr("The plug-in has logged nothing.")
                                            : qsTr("No line contains this text.")
        }
    }
}
