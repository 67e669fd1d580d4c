import QtQuick
import QtQuick.Controls
import QtQuick.Layouts
import Client.Common
import Client.Dialogs

/// Edits start and end of a bookmark in the server's time zone and shows its length.
ColumnLayout {
    id: fields

    required property string timeZone ///< IANA identifier

    readonly property var start: startField.moment ///< milliseconds since the epoch, or undefined
    readonly property var end: endField.moment
    readonly property bool known: start !== undefined && end !== undefined
    readonly property bool valid: known && start <= end

    function setRange(from, to) {
        startField.setMoment(from);
        endField.setMoment(to);
    }

    spacing: 2

    DateTimeTexts {
        id: texts
        timeZone: fields.timeZone
    }
    RowLayout {
        spacing: Theme.margin

        DateTimeField {
            id: startField
            objectName: "addStart"
            title: qsTr("Start")
            texts: texts
        }
        DateTimeField {
            id: endField
            objectName: "addEnd"
            title: qsTr("End")
            texts: texts
            problem: fields.known && !fields.valid ? qsTr("The end is before the start") : ""
        }
    }
    Label {
        objectName: "addLength"
        Layout.fillWidth: true
        color: Theme.faintText
        font.pixelSize: Theme.smallText
        text: fields.valid ? qsTr("Length: %1").arg(texts.lengthText(fields.end - fields.start)) : ""
    }
}
