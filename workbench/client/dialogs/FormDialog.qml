import QtQuick
import QtQuick.Controls
import QtQuick.Layouts
import Client.Common

/// A dialog that sends a request to the plug-in: it stays open until the outcome has come, and
/// with the error when it failed. Enter accepts, Esc closes.
///
/// The plug-in's signals do not name the request that they answer. Therefore a dialog sends nothing
/// before it has all signals of its last request, also when the user has closed it meanwhile.
Dialog {
    id: dialog

    required property AppState app

    property string acceptText: qsTr("OK")
    property bool valid: true  ///< what was entered may be sent
    property string missing: "" ///< the missing input, as text; shown after the first try
    property bool tried: false ///< to send
    property bool gated: false ///< the server may forbid it
    property Item firstField: null
    property bool busy: false  ///< the user waits for an outcome
    property int pending: 0    ///< signals to come
    property int patience: 30  ///< seconds after which no more signals are awaited
    property var asked: []     ///< names of the stations that the last request was for
    property string error: ""
    readonly property bool ready: valid && !busy && pending === 0 && (!gated || app.settingAllowed)

    /// The user has confirmed: send the request, then call settle() with its outcome.
    signal submitted()

    function submit() {
        tried = true;
        if (ready && !missing)
            submitted();
    }

    /// To be called before a request, as its signals may come before the call returns.
    /// @param signals how many will come
    /// @param relayPaths of the stations that will answer; empty for the server
    function begin(signals, relayPaths) {
        error = "";
        busy = true;
        pending = signals;
        asked = app.topology.stationNames(relayPaths);
        timeout.restart();
    }

    /// Counts a signal.
    /// @return whether it is for the request that the user waits for
    function noteSignal() {
        const own = busy;
        if (pending === 1)
            timeout.stop();
        pending = Math.max(0, pending - 1);
        return own;
    }

    /// What the request returned. Of one that was not sent no signal comes, or it has come already.
    function noteSent(accepted) {
        if (!accepted && pending > 0 && noteSignal())
            settle(qsTr("The request could not be sent."));
    }

    /// A signal has come, with a text when it reports a failure.
    function noteOutcome(problem) {
        if (noteSignal())
            settle(problem);
    }

    /// The outcome: an empty text closes the dialog.
    function settle(problem) {
        busy = false;
        if (pending === 0)
            timeout.stop();
        error = problem;
        if (problem === "")
            close();
    }

    readonly property Timer timeout: Timer {
        interval: 1000 * dialog.patience
        onTriggered: {
            const waited = dialog.busy;
            dialog.pending = 0;
            if (waited)
                dialog.settle(qsTr("No answer has come within %1 seconds. The request may still be "
                                   + "executed: refresh the list before you try again.")
                              .arg(dialog.patience));
        }
    }

    parent: Overlay.overlay
    anchors.centerIn: parent
    width: Math.min(parent ? parent.width - 40 : 480, 480)
    modal: true
    closePolicy: Popup.CloseOnEscape // a click beside the form would discard the input
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
        waiting: dialog.busy || dialog.pending > 0
        awaited: dialog.busy ? dialog.asked.join(", ") || qsTr("the server")
                             : qsTr("the answer to the last request")
        problem: dialog.error
        hint: dialog.gated ? dialog.app.lockReason : ""
        onAccepted: dialog.submit()
        onRejected: dialog.close()
    }
}
