import QtQuick
import Client.Common
import Preparation

/// The window before the main window: shows the progress of the preparation, then its messages.
ThemedWindow {
    id: window

    required property Preparation preparation

    width: 640
    height: window.preparation.running ? 180 : 420
    minimumWidth: 400
    minimumHeight: 160
    title: qsTr("Tessaline workbench")

    onClosing: close => {
        close.accepted = false;
        if (preparation.running)
            preparation.cancel();
        else
            preparation.acknowledged();
    }

    // Most preparations end sooner; a window that appears for an instant would flicker.
    Timer {
        interval: 300
        running: window.preparation.running
        onTriggered: window.visible = true
    }
    Connections {
        target: window.preparation
        function onFinished() {
            if (window.preparation.report !== "")
                window.visible = true;
        }
    }

    PreparationProgress {
        anchors.fill: parent
        anchors.margins: Theme.margin
        visible: window.preparation.running
        preparation: window.preparation
    }
    PreparationMessages {
        anchors.fill: parent
        anchors.margins: Theme.margin
        visible: !window.preparation.running
        preparation: window.preparation
    }
}
