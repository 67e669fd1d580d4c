import QtQuick
import QtQuick.Controls
import QtQuick.Layouts
import Workbench

/// A moment, typed as text, with what is wrong with it next to it.
ColumnLayout {
    id: field

    required property string title
    required property DateTimeTexts texts
    property string problem: "" ///< what is wrong with it beside the text itself

    /// Milliseconds since the epoch; undefined while the text is none.
    property var moment: undefined
    readonly property alias input: input

    // The text has no milliseconds and may stand for two moments: it counts only when edited.
    function setMoment(ms) {
        moment = ms;
        input.text = texts.textOf(ms);
    }

    spacing: 2

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
        onTextEdited: field.moment = field.texts.momentOf(text)
    }
    Label {
        id: problemLabel
        objectName: field.objectName + "Problem"
        Layout.fillWidth: true
        color: Theme.failure
        font.pixelSize: Theme.smallText
        wrapMode: Text.Wrap
        text: field.moment === undefined ? qsTr("Not a time like 2026-03-29 14:05:30")
                                         : field.problem
    }
}
