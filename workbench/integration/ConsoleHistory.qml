pragma ComponentBehavior: Bound
import QtQuick
import QtQuick.Controls
import QtQuick.Layouts
import Client.Common

/// Lists the calls so far. Choosing one fills the form with its arguments.
ColumnLayout {
    id: pane

    required property var history

    signal chosen(var entry)

    spacing: Theme.gap

    Label {
        text: qsTr("History")
        color: Theme.faintText
        leftPadding: Theme.gap
    }
    ListView {
        id: list
        objectName: "callHistory"
        model: pane.history
        clip: true
        currentIndex: -1
        keyNavigationEnabled: true
        activeFocusOnTab: true
        boundsBehavior: Flickable.StopAtBounds
        Accessible.role: Accessible.List
        Accessible.name: qsTr("History")
        Keys.onReturnPressed: {
            if (currentIndex >= 0)
                pane.chosen(pane.history[currentIndex]);
        }
        Layout.fillWidth: true
        Layout.fillHeight: true

        ScrollBar.vertical: ScrollBar { }
        delegate: ItemDelegate {
            required property var modelData
            width: list.width
            highlighted: ListView.isCurrentItem && list.activeFocus // a new model makes its first row current
            focusPolicy: Qt.NoFocus
            padding: 3
            font.pixelSize: Theme.smallText
            text: modelData.method.name + "(" + modelData.texts.join(", ") + ")"
            ToolTip.visible: hovered
            ToolTip.delay: 600
            ToolTip.text: text
            onClicked: pane.chosen(modelData)
        }
    }
}
