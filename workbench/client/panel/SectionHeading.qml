import QtQuick
import QtQuick.Controls
import QtQuick.Layouts
import Client.Common

/// The heading of a group, with the number of its bookmarks on this page.
Rectangle {
    id: heading

    property string title: ""
    property int count: 0

    implicitHeight: titleLabel.implicitHeight + Theme.gap
    color: Theme.raised
    Accessible.role: Accessible.Heading
    Accessible.name: qsTr("%1, %2 on this page").arg(titleLabel.text).arg(count)

    RowLayout {
        anchors { fill: parent; leftMargin: Theme.gap; rightMargin: Theme.gap }

        Label {
            id: titleLabel
            Layout.fillWidth: true
            text: heading.title || qsTr("(none)")
            textFormat: Text.PlainText
            elide: Text.ElideRight
            font.bold: true
        }
        Label {
            text: heading.count
            color: Theme.faintText
        }
    }
    HoverHandler {
        id: hover
    }
    ToolTip.text: heading.Accessible.name
    ToolTip.visible: hover.hovered
    ToolTip.delay: 500
}
