import QtQuick
import QtQuick.Controls
import QtQuick.Layouts
import Client.Common
import Preparation

/// Shows the messages of the preparation until the user confirms them.
ColumnLayout {
    id: page

    required property Preparation preparation

    spacing: Theme.gap

    Label {
        text: page.preparation.summary || qsTr("Before the window opens")
        font.pixelSize: Theme.largeText
        wrapMode: Text.Wrap
        Layout.fillWidth: true
    }
    ScrollView {
        Layout.fillWidth: true
        Layout.fillHeight: true

        TextArea {
            objectName: "preparationMessages"
            text: page.preparation.report
            readOnly: true
            selectByMouse: true
            wrapMode: TextEdit.WrapAnywhere
            color: Theme.text
            Accessible.name: qsTr("Messages")
        }
    }
    Button {
        objectName: "acknowledge"
        text: qsTr("Open the window")
        Layout.alignment: Qt.AlignRight
        onVisibleChanged: if (visible) forceActiveFocus()
        Keys.onReturnPressed: clicked()
        onClicked: page.preparation.acknowledged()
    }
}
