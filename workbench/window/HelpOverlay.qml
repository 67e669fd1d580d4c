pragma ComponentBehavior: Bound
import QtQuick
import QtQuick.Controls
import QtQuick.Layouts
import Client.Common

/// Lists the keys of the window, in one section for each part.
Dialog {
    id: help

    /// Maps of "title" and "keys"; keys are pairs of a key and its action, as texts.
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

                ColumnLayout {
                    id: section

                    required property var modelData

                    width: (scroller.availableWidth - 2 * Theme.margin) / 2
                    spacing: 3

                    Label {
                        text: section.modelData.title
                        font.bold: true
                        Layout.topMargin: Theme.gap
                    }
                    Repeater {
                        model: section.modelData.keys

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
            }
        }
    }
}
