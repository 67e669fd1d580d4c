import QtQuick
import QtQuick.Controls
import Workbench

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
    onCountChanged: follow()
    onHeightChanged: follow()
    onCurrentIndexChanged: following = currentIndex < 0 || currentIndex === count - 1

    function follow() {
        if (following)
            positionViewAtEnd();
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
