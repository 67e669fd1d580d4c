import QtQuick
import QtQuick.Controls
import Client.Common

/// Shows a short message at the lower edge of the window; failures stay longer.
Rectangle {
    id: notice

    property bool failure: false
    property alias text: label.text

    function show(text, failure) {
        notice.text = text;
        notice.failure = failure;
        opacity = 1;
        timer.restart();
    }

    objectName: "notice"
    width: Math.min(label.implicitWidth + 4 * Theme.margin, parent.width - 4 * Theme.margin)
    height: label.implicitHeight + 2 * Theme.margin
    radius: Theme.radius
    opacity: 0
    visible: opacity > 0
    color: Theme.surface
    border { width: 2; color: failure ? Theme.failure : Theme.good }
    Accessible.role: Accessible.AlertMessage
    Accessible.name: label.text

    Behavior on opacity {
        NumberAnimation { duration: 150 }
    }

    Label {
        id: label
        anchors.centerIn: parent
        width: Math.min(implicitWidth, notice.width - 2 * Theme.margin)
        wrapMode: Text.Wrap
        horizontalAlignment: Text.AlignHCenter
    }
    Timer {
        id: timer
        interval: notice.failure ? 8000 : 2500
        onTriggered: notice.opacity = 0
    }
    TapHandler {
        onTapped: notice.opacity = 0
    }
}
