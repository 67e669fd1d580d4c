import QtQuick
import QtQuick.Controls
import QtQuick.Layouts
import Client.Common

/// A row of the differences, with a button to show those that follow from it.
ItemDelegate {
    id: row

    required property int index
    required property int line
    required property string description
    required property bool follows
    required property int followers
    required property bool unfolded

    signal chosen(int line)
    signal toggled(int row)

    width: ListView.view.width
    padding: 2
    leftPadding: follows ? 3 * Theme.margin : Theme.gap
    highlighted: ListView.isCurrentItem
    focusPolicy: Qt.NoFocus
    Accessible.name: qsTr("Line %1: %2").arg(line).arg(description)

    onClicked: {
        ListView.view.currentIndex = index;
        ListView.view.forceActiveFocus();
        chosen(line);
    }

    contentItem: RowLayout {
        spacing: Theme.gap

        Label {
            text: row.line
            horizontalAlignment: Text.AlignRight
            color: row.highlighted ? Theme.accentText : Theme.faintText
            Layout.preferredWidth: 40
        }
        Label {
            text: row.description
            textFormat: Text.PlainText
            wrapMode: Text.Wrap
            maximumLineCount: 3
            elide: Text.ElideRight
            font.pixelSize: Theme.smallText
            color: row.highlighted ? Theme.accentText : row.follows ? Theme.faintText : Theme.failure
            Layout.fillWidth: true
        }
        Button {
            objectName: "unfold"
            visible: row.followers > 0
            text: row.unfolded ? qsTr("Fold %1").arg(row.followers)
                               : qsTr("%1 more that follow from it").arg(row.followers)
            onClicked: row.toggled(row.index)
        }
    }
}
