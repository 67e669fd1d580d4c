pragma ComponentBehavior: Bound
import QtQuick
import QtQuick.Controls
import Client.Common

/// All keys of the window, a section for each of its parts.
Dialog {
    id: help

    /// Maps of title and keys, pairs of keys and what they do.
    required property var sections

    title: qsTr("Keys")
    modal: true
    standardButtons: Dialog.Close
    anchors.centerIn: Overlay.overlay
    width: Math.min(parent.width - 80, 860)
    height: Math.min(parent.height - 80, 640)
    Overlay.modal: Rectangle {
        color: Theme.veil
    }

    ScrollView {
        id: scroller
        anchors.fill: parent
        contentWidth: availableWidth
        focus: true

        Flow {
            width: scroller.availableWidth
            spacing: 2 * Theme.margin

            Repeater {
                model: help.sections

                HelpSection {
                    required property var modelData
                    title: modelData.title
                    keys: modelData.keys
                    width: (scroller.availableWidth - 2 * Theme.margin) / 2
                }
            }
        }
    }
}
