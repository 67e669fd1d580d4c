import QtQuick
import QtQuick.Controls
import Client.Common

/// A list that scrolls to new rows at its end, unless the user has scrolled away or chosen a row.
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
        interval: 0 // after the view has updated its rows and height
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
