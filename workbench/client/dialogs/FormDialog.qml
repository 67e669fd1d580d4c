import QtQuick
import QtQuick.Controls
import QtQuick.Layouts
import Client.Common

/// A dialog that asks the plug-in for something: it stays open until the outcome has come, and
/// with the error when it failed. Enter accepts, Esc closes.
Dialog {
    id: dialog

    required property Client client

    property string acceptText: qsTr("OK")
    property bool valid: true  ///< what was entered may be sent
    property string missing: "" ///< the missing input, as text; shown after the first try
    property bool tried: false ///< to send
    property bool gated: false ///< the server may forbid it
    property Item firstField: null
    property bool busy: false  ///< an outcome is to come
    property string awaited: "" ///< names of those whose answers are to come
    property string error: ""
    property real lastBefore: 0 ///< number of the last command before those of this dialog
    property var answered: new Set() ///< numbers of those whose outcome has come
    readonly property bool ready: valid && !busy && (!gated || client.settingAllowed)

    /// To be sent. The outcome goes to settle().
    signal submitted()

    function submit() {
        tried = true;
        if (!ready || missing)
            return;
        begin();
        submitted();
    }

    function noteAwaited() {
        const names = [];
        for (const station of client.bench.stations) {
            if (client.bench.isAwaited(station.relayPath))
                names.push(station.name);
        }
        awaited = names.join(", ") || qsTr("the server");
    }

    readonly property Connections traffic: Connections {
        target: dialog.client.bench
        enabled: dialog.busy
        function onTrafficPassed() {
            dialog.noteAwaited();
        }
    }

    /// From now on outcomes are awaited.
    function begin() {
        error = "";
        busy = true;
        lastBefore = client.bench.lastRequest();
        answered.clear();
    }

    /// Whether the outcome that has just come is one of this dialog's. The plug-in's signals don't
    /// tell: it may be that of a dialog that was left before, or the same once more.
    function isOwn() {
        const request = client.bench.answeredRequest();
        if (request === 0) // refused on the way
            return true;
        const own = request > lastBefore && !answered.has(request);
        answered.add(request);
        return own;
    }

    /// What the request returned. Its outcome may have come already.
    function noteSent(accepted) {
        if (!accepted && busy)
            settle(qsTr("The request could not be sent."));
    }

    /// An outcome has come, with a text when it is a failure.
    function noteOutcome(problem) {
        if (isOwn())
            settle(problem);
    }

    /// The outcome: an empty text closes the dialog.
    function settle(problem) {
        busy = false;
        error = problem;
        if (problem === "")
            close();
    }

    parent: Overlay.overlay
    anchors.centerIn: parent
    width: Math.min(parent ? parent.width - 40 : 480, 480)
    modal: true
    focus: true
    padding: Theme.margin
    Overlay.modal: Rectangle {
        color: Theme.veil
    }
    onAboutToShow: {
        error = "";
        tried = false;
        busy = false;
    }
    onOpened: {
        if (firstField)
            firstField.forceActiveFocus(Qt.PopupFocusReason);
    }
    onClosed: busy = false

    contentItem: ColumnLayout {
        spacing: Theme.gap
        Keys.onReturnPressed: dialog.submit()
        Keys.onEnterPressed: dialog.submit()
    }

    footer: DialogFooter {
        acceptText: dialog.acceptText
        ready: dialog.ready
        busy: dialog.busy
        awaited: dialog.awaited
        problem: dialog.error
        hint: dialog.gated ? dialog.client.lockReason : ""
        onAccepted: dialog.submit()
        onRejected: dialog.close()
    }
}
