import QtQuick
import QtQuick.Controls
import QtQuick.Layouts
import Client.Common

/// Shows the reason why the workbench can't start.
ThemedWindow {
    id: window

    required property string message

    width: 640
    height: 240
    minimumWidth: 400
    minimumHeight: 160
    visible: true
    title: qsTr("Tessaline workbench")

    ColumnLayout {
        anchors.fill: parent
        anchors.margins: Theme.margin
        spacing: Theme.gap

        Label {
            text: qsTr("The workbench can't start")
            font.pixelSize: Theme.largeText
        }
        ScrollView {
            Layout.fillWidth: true
            Layout.fillHeight: true

            TextArea {
                objectName: "errorMessage"
                text: window.message
                readOnly: true
                selectByMouse: true
                wrapMode: TextEdit.Wrap
                color: Theme.text
                Accessible.name: qsTr("Error")
            }
        }
        Button {
            text: qsTr("Close")
            focus: true
            Layout.alignment: Qt.AlignRight
            Keys.onReturnPressed: clicked()
            Keys.onEscapePressed: clicked()
            onClicked: window.close()
        }
    }
}
