import QtQuick
import QtQuick.Controls
import QtQuick.Layouts
import Client.Common
import Client.Dialogs

/// A moment, typed as text, with a remark on the text below it.
ColumnLayout {
    id: field

    required property string title
    required property DateTimeTexts texts
    property string problem: "" ///< an error other than in the text itself

    /// Milliseconds since the epoch; undefined while the text is not a time.
    property var moment: undefined
    property string remark: "" ///< on the text as it was typed
    readonly property alias input: input

    // The text has no milliseconds and may stand for two moments: it counts only when edited.
    function setMoment(ms) {
        moment = ms;
        remark = "";
        input.text = texts.textOf(ms);
    }

    spacing: 2
    Layout.fillWidth: true
    Layout.preferredWidth: 1 // the same for all fields of a row, whatever their remarks

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
