import QtQuick
import QtQuick.Controls
import QtQuick.Layouts
import Client.Common
import Client.Dialogs

/// Edits a moment as text, with a remark below.
ColumnLayout {
    id: field

    required property string title
    required property DateTimeTexts texts
    property string problem: "" ///< an error that is not in the text itself

    /// Milliseconds since the epoch; undefined while the text is not a time.
    property var moment: undefined
    property string remark: "" ///< DateTimeTexts.remarkOn() the typed text
    readonly property alias input: input

    // Only an edited text sets the moment: it has no milliseconds and may be ambiguous.
    function setMoment(ms) {
        moment = ms;
        remark = "";
        input.text = texts.textOf(ms);
    }

    spacing: 2
    Layout.fillWidth: true
    Layout.preferredWidth: 1 // equal widths in a row, whatever the remarks

    Label {
        text: field.title
    }
    TextField {
        id: input
        objectName: field.objectName + "Input"
        Layout.fillWidth: true
        selectByMouse: true
        Accessible.name: field.title
        Accessible.description: problemLabel.text
        ToolTip.text: qsTr("Date and time in %1").arg(field.texts.timeZone)
        ToolTip.visible: hovered
        onTextEdited: {
            field.moment = field.texts.momentOf(text);
            field.remark = field.texts.remarkOn(text);
        }
    }
    Label {
        id: problemLabel
        objectName: field.objectName + "Problem"
        Layout.fillWidth: true
        color: field.moment === undefined || field.problem ? Theme.failure : Theme.warning
        font.pixelSize: Theme.smallText
        wrapMode: Text.Wrap
        text: field.problem || field.remark
    }
}
