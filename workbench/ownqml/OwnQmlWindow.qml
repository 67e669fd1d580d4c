import QtQuick
import QtQuick.Controls
import QtQuick.Layouts
import Client.Common
import OwnQml

/// Shows a developer's QML file in place of the client, and the errors that its engine reports.
ThemedWindow {
    id: window

    required property OwnQml own
    property bool tried: false ///< to load the file

    width: 1000
    height: Math.min(700, Math.max(300, Screen.desktopAvailableHeight - 480)) // above the drawer's
    visible: true
    title: own.file.split("/").pop()

    onClosing: Qt.quit()

    Shortcut {
        sequence: "F5"
        onActivated: window.own.load()
    }
    Connections {
        target: window.own
        function onLoaded() {
            window.tried = true;
            if (!window.own.item)
                return;
            window.own.item.parent = place;
            window.own.item.width = Qt.binding(() => place.width);
            window.own.item.height = Qt.binding(() => place.height);
        }
    }

    ColumnLayout {
        anchors.fill: parent
        spacing: 0

        Item {
            id: place
            objectName: "place"
            Layout.fillWidth: true
            Layout.fillHeight: true

            Label {
                objectName: "noItem"
                anchors.centerIn: parent
                visible: window.tried && !window.own.item && window.own.errorText === ""
                text: qsTr("The root of the file is not an Item, so this window does not show it.")
                color: Theme.faintText
            }
        }
        ScrollView {
            id: errors
            contentWidth: availableWidth
            visible: window.own.errorText !== ""
            Layout.fillWidth: true
            Layout.preferredHeight: Math.min(contentHeight, window.height / 2)

            TextArea {
                objectName: "errors"
                text: window.own.errorText
                readOnly: true
                selectByMouse: true
                wrapMode: TextEdit.Wrap
                color: Theme.failure
                font.family: "monospace"
                Accessible.name: qsTr("Errors")
            }
        }
        Label {
            padding: Theme.gap
            elide: Text.ElideMiddle
            color: Theme.faintText
            font.pixelSize: Theme.smallText
            text: qsTr("%1: save the file or press F5 to load it again.").arg(window.own.file)
            Layout.fillWidth: true
        }
    }
}
