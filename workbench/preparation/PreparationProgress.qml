import QtQuick
import QtQuick.Controls
import QtQuick.Layouts
import Client.Common
import Preparation

/// What is being done, how far it is, and a way out of it.
ColumnLayout {
    id: page

    required property Preparation preparation

    spacing: Theme.gap

    Label {
        text: qsTr("Preparing …")
        font.pixelSize: Theme.largeText
    }
    Label {
        text: page.preparation.activity
        wrapMode: Text.WrapAnywhere
        Layout.fillWidth: true
    }
    ProgressBar {
        objectName: "preparationBar"
        value: page.preparation.progress
        indeterminate: page.preparation.progress === 0
        Accessible.name: page.preparation.activity
        Layout.fillWidth: true
    }
    Item {
        Layout.fillHeight: true
    }
    Button {
        objectName: "cancelPreparation"
        text: qsTr("Cancel")
        focus: true
        Layout.alignment: Qt.AlignRight
        ToolTip.visible: hovered
        ToolTip.text: qsTr("Goes on with what is there")
        Keys.onEscapePressed: clicked()
        onClicked: {
            enabled = false;
            page.preparation.cancel();
        }
    }
}
