import QtQuick
import QtQuick.Controls
import QtQuick.Layouts
import Client.Common

/// The footer of a form dialog: error, progress and buttons.
Pane {
    id: footer

    required property string acceptText
    required property bool ready
    required property bool waiting
    required property string awaited
    required property string problem
    required property string hint ///< reason why the server forbids the action; empty if it does not

    signal accepted()
    signal rejected()

    padding: Theme.margin

    ColumnLayout {
        anchors.fill: parent
        spacing: Theme.gap

        Label {
            objectName: "dialogProblem"
            Layout.fillWidth: true
            visible: text !== ""
            text: footer.problem || footer.hint
            color: footer.problem ? Theme.failure : Theme.warning
            wrapMode: Text.Wrap
            Accessible.role: Accessible.AlertMessage
        }
        RowLayout {
            spacing: Theme.gap

            ProgressBar {
                objectName: "dialogProgress"
                Layout.preferredWidth: 60
                visible: footer.waiting
                indeterminate: true
                Accessible.name: waitingLabel.text
            }
            Label {
                id: waitingLabel
                objectName: "dialogWaiting"
                Layout.fillWidth: true
                elide: Text.ElideRight
                color: Theme.faintText
                text: footer.waiting ? qsTr("Waiting for %1 …").arg(footer.awaited) : ""
            }
            Button {
                objectName: "dialogAccept"
                text: footer.acceptText
                enabled: footer.ready
                highlighted: true
                ToolTip.text: footer.hint
                ToolTip.visible: hover.hovered && footer.hint !== ""
                onClicked: footer.accepted()
                Keys.onReturnPressed: footer.accepted()
            }
            Button {
                objectName: "dialogCancel"
                text: footer.waiting ? qsTr("Close") : qsTr("Cancel")
                onClicked: footer.rejected()
                Keys.onReturnPressed: footer.rejected()
            }
        }
    }
    HoverHandler {
        id: hover
    }
}
