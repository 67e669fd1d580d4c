pragma ComponentBehavior: Bound
import QtQuick
import QtQuick.Controls
import QtQuick.Layouts
import Client.Common

/// The keys of one part of the window.
ColumnLayout {
    id: section

    required property string title
    required property var keys ///< pairs of keys and what they do

    spacing: 3

    Label {
        text: section.title
        font.bold: true
        Layout.topMargin: Theme.gap
    }
    Repeater {
        model: section.keys

        RowLayout {
            id: line

            required property var modelData

            Label {
                text: line.modelData[0]
                color: Theme.accent
                font.pixelSize: Theme.smallText
                wrapMode: Text.Wrap
                Layout.preferredWidth: 130
            }
            Label {
                text: line.modelData[1]
                font.pixelSize: Theme.smallText
                wrapMode: Text.Wrap
                Layout.fillWidth: true
            }
        }
    }
}
