import QtQuick
import QtQuick.Controls
import QtQuick.Layouts
import Client.Common

/// The line above a picture: the camera, its status and buttons.
Control {
    id: header

    required property string cameraName
    required property string stationName
    required property string status
    property bool failed: false

    signal retryRequested()
    signal addRequested()
    signal closeRequested()

    leftPadding: Theme.gap
    background: Rectangle {
        color: Theme.raised
    }

    contentItem: RowLayout {
        spacing: 2

        ElidedLabel {
            text: header.width < 260 ? header.cameraName : wholeText
            wholeText: header.stationName + " – " + header.cameraName
            font.bold: true
            Layout.fillWidth: true
            Layout.minimumWidth: 40
        }
        ElidedLabel {
            objectName: "cellStatus"
            text: header.status
            color: header.failed ? Theme.failure : Theme.faintText
            font.pixelSize: Theme.smallText
            Layout.maximumWidth: Math.ceil(implicitWidth) + 1
            Layout.fillWidth: true
        }
        CellButton {
            objectName: "retry"
            visible: header.failed
            text: "↻"
            hint: qsTr("Query the station again")
            onClicked: header.retryRequested()
        }
        CellButton {
            objectName: "addHere"
            text: "+"
            hint: qsTr("Add a bookmark here (A)")
            onClicked: header.addRequested()
        }
        CellButton {
            objectName: "closeCell"
            text: "✕"
            hint: qsTr("Empty this cell (Delete)")
            onClicked: header.closeRequested()
        }
    }
}
