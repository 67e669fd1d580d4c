import QtQuick
import QtQuick.Controls
import QtQuick.Layouts
import Client.Common
import Preparation

/// Shows the activity and progress of the preparation, with a button to cancel.
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
        ToolTip.text: qsTr("Skip the rest and open the window")
        Keys.onEscapePressed: clicked()
        onClicked: {
            enabled = false;
            page.preparation.cancel();
        }
    }
}
