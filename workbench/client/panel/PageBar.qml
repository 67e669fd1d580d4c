pragma ComponentBehavior: Bound
import QtQuick
import QtQuick.Controls
import QtQuick.Layouts

/// Shows the position of the page in the result, with buttons for the other pages.
RowLayout {
    id: bar

    required property PageQuery query

    readonly property int last: query.pageCount - 1

    function digits(number) {
        return Number(number).toLocaleString(Qt.locale(), "f", 0);
    }

    spacing: 2

    component Turn: ToolButton {
        required property int page
        property string hint: ""
        enabled: page >= 0 && page <= bar.last && page !== bar.query.shownPage
        focusPolicy: Qt.StrongFocus
        Accessible.name: hint
        ToolTip.text: hint
        ToolTip.visible: hovered
        onClicked: bar.query.goTo(page)
    }

    Turn {
        objectName: "firstPage"
        page: 0
        text: "«"
        hint: qsTr("First page (Ctrl+Home)")
    }
    Turn {
        objectName: "previousPage"
        page: bar.query.shownPage - 1
        text: "‹"
        hint: qsTr("Previous page (Ctrl+PgUp)")
    }
    Label {
        objectName: "pageText"
        Layout.fillWidth: true
        horizontalAlignment: Text.AlignHCenter
        elide: Text.ElideRight
        text: bar.query.total === 0 ? qsTr("none")
            : qsTr("%1 to %2 of %3").arg(bar.digits(bar.query.firstShown))
                .arg(bar.digits(bar.query.lastShown)).arg(bar.digits(bar.query.total))
    }
    Turn {
        objectName: "nextPage"
        page: bar.query.shownPage + 1
        text: "›"
        hint: qsTr("Next page (Ctrl+PgDn)")
    }
    Turn {
        objectName: "lastPage"
        page: bar.last
        text: "»"
        hint: qsTr("Last page (Ctrl+End)")
    }

    Shortcut {
        sequence: "Ctrl+PgUp"
        onActivated: bar.query.goTo(bar.query.shownPage - 1)
    }
    Shortcut {
        sequence: "Ctrl+PgDown"
        onActivated: bar.query.goTo(bar.query.shownPage + 1)
    }
    Shortcut {
        sequence: "Ctrl+Home"
        onActivated: bar.query.goTo(0)
    }
    Shortcut {
        sequence: "Ctrl+End"
        onActivated: bar.query.goTo(bar.last)
    }
}
