pragma ComponentBehavior: Bound
import QtQuick
import QtQuick.Controls
import QtQuick.Layouts
import Client.Common

/// Edits the arguments of a call and shows its result.
ColumnLayout {
    id: form

    required property var method ///< null if none is chosen
    required property var texts  ///< initial texts of the arguments
    property var outcome: ({})   ///< the map that PluginConsole.call() returned

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

    /// Scrolls to a field, as a ScrollView does not follow the focus.
    function reveal(field) {
        const view = scroller.contentItem as Flickable;
        view.contentY = Math.max(Math.min(view.contentY, field.y), field.y + field.height - view.height);
    }

    onMethodChanged: outcome = {}
    spacing: Theme.gap

    ScrollView {
        id: scroller
        contentWidth: availableWidth
        clip: true
        Layout.fillWidth: true
        Layout.fillHeight: true

        ColumnLayout {
            width: scroller.availableWidth
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
                    id: field
                    text: form.texts[index] ?? ""
                    wrong: form.outcome.parameter === index
                    onAccepted: form.submit()
                    onEditorFocused: form.reveal(field)
                }
            }
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
            Layout.alignment: Qt.AlignTop
        }
        ScrollView {
            contentWidth: availableWidth
            Layout.fillWidth: true
            Layout.preferredHeight: Math.min(outcomeText.implicitHeight, form.height / 2)

            TextArea {
                id: outcomeText
                objectName: "callOutcome"
                text: form.outcome.error ?? form.outcome.result ?? ""
                readOnly: true
                selectByMouse: true
                wrapMode: TextEdit.WrapAnywhere
                textFormat: TextEdit.PlainText
                color: form.outcome.error ? Theme.failure : Theme.text
                font { family: "monospace"; pixelSize: Theme.smallText }
                background: null
                Accessible.name: qsTr("Result")
            }
        }
    }
}
