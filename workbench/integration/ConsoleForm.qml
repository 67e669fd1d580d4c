pragma ComponentBehavior: Bound
import QtQuick
import QtQuick.Controls
import QtQuick.Layouts
import Client.Common

/// The arguments of a call, and its result.
ScrollView {
    id: form

    required property var method ///< null: none is chosen
    required property var texts  ///< of the arguments at first
    property var outcome: ({})   ///< of the last call, as from PluginConsole.call()

    signal callWanted(var typed)

    function focusFirst() {
        if (fields.count > 0)
            fieldAt(0).focusEditor();
        else
            button.forceActiveFocus(Qt.TabFocusReason);
    }

    function fieldAt(index): ConsoleField {
        return fields.itemAt(index) as ConsoleField;
    }

    function submit() {
        callWanted(Array.from({ length: fields.count }, (_, i) => fieldAt(i).typed));
        if (outcome.parameter !== undefined)
            fieldAt(outcome.parameter).focusEditor();
    }

    onMethodChanged: outcome = {}
    contentWidth: availableWidth
    clip: true

    ColumnLayout {
        width: form.availableWidth
        spacing: 2

        Label {
            text: form.method ? form.method.signature : qsTr("Choose a method to call it.")
            wrapMode: Text.Wrap
            color: Theme.faintText
            leftPadding: Theme.gap
            Layout.fillWidth: true
        }
        Repeater {
            id: fields
            model: form.method ? form.method.parameters : []
            ConsoleField {
                text: form.texts[index] ?? ""
                wrong: form.outcome.parameter === index
                onAccepted: form.submit()
            }
        }
        RowLayout {
            visible: form.method !== null
            Button {
                id: button
                objectName: "callMethod"
                text: qsTr("Call")
                onClicked: form.submit()
                Keys.onReturnPressed: clicked()
            }
            TextArea {
                objectName: "callOutcome"
                text: form.outcome.error ?? form.outcome.result ?? ""
                readOnly: true
                selectByMouse: true
                wrapMode: TextEdit.WrapAnywhere
                textFormat: TextEdit.PlainText
                color: form.outcome.error ? Theme.failure : Theme.text
                font.family: "monospace"
                background: null
                Accessible.name: qsTr("Result")
                Layout.fillWidth: true
            }
        }
    }
}
