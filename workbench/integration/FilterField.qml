pragma ComponentBehavior: Bound
import QtQuick
import QtQuick.Controls
import Client.Common
import Integration

/// Edits a filter expression. Tab completes it; a popup shows completions or the error.
SearchField {
    id: field

    required property TrafficModel traffic
    required property string error
    property var completions: []

    function complete(text) {
        field.text = text + (text.endsWith(":") ? "" : " ");
        field.cursorPosition = field.text.length;
        completions = [];
    }

    function cancel() {
        if (completions.length > 0)
            completions = [];
        else
            clear();
    }

    color: error !== "" ? Theme.failure : Theme.text
    onTextEdited: completions = traffic.completions(text)
    onActiveFocusChanged: completions = []
    onAccepted: completions = []
    Keys.onTabPressed: event => {
        if (completions.length > 0)
            complete(completions[0]);
        else
            event.accepted = false;
    }

    Popup {
        objectName: "completions"
        y: field.height
        width: Math.max(field.width, 300)
        padding: 2
        visible: field.activeFocus && (field.completions.length > 0 || field.error !== "")
        closePolicy: Popup.NoAutoClose
        contentItem: Column {
            Label {
                objectName: "filterError"
                visible: field.error !== "" && field.completions.length === 0
                width: parent.width
                text: field.error
                wrapMode: Text.Wrap
                color: Theme.failure
            }
            Repeater {
                model: field.completions
                ItemDelegate {
                    required property int index
                    required property string modelData
                    width: parent.width
                    padding: 3
                    text: modelData + (index === 0 ? qsTr("   (Tab)") : "")
                    focusPolicy: Qt.NoFocus
                    onClicked: field.complete(modelData)
                }
            }
        }
    }
}
