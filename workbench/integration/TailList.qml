import QtQuick
import QtQuick.Controls
import Client.Common

/// A list that grows at its end and stays there, unless the user has gone elsewhere.
ListView {
    id: list

    property bool following: true

    clip: true
    activeFocusOnTab: true
    boundsBehavior: Flickable.StopAtBounds
    reuseItems: true
    currentIndex: -1
    highlightMoveDuration: 0
    keyNavigationEnabled: true
    Accessible.role: Accessible.List

    ScrollBar.vertical: ScrollBar { policy: ScrollBar.AsNeeded }

    onMovementEnded: following = atYEnd
    onCountChanged: later.restart()
    onHeightChanged: later.restart()
    onCurrentIndexChanged: following = currentIndex < 0 || currentIndex === count - 1

    Timer {
        id: later
        interval: 0 // once the view has taken in its rows and its height
        onTriggered: {
            if (list.following)
                list.positionViewAtEnd();
        }
    }

    Keys.onPressed: event => {
        if (event.key === Qt.Key_Home)
            currentIndex = 0;
        else if (event.key === Qt.Key_End)
            currentIndex = count - 1;
        else
            return;
        event.accepted = true;
    }

    Rectangle {
        anchors.fill: parent
        visible: list.activeFocus
        color: "transparent"
        border.color: Theme.accent
    }
}
