import QtQuick
import QtQuick.Controls
import QtQuick.Layouts
import Client.Common

/// A dialog that sends a request to the plug-in. It stays open until the result arrives, and shows the
/// error if the request fails. Enter accepts, Esc closes.
///
/// The plug-in's signals do not name their request. So a dialog sends nothing until all signals of
/// its last request have come, even if the user has closed it meanwhile.
Dialog {
    id: dialog

    required property AppState app

    property string acceptText: qsTr("OK")
    property bool valid: true  ///< the input may be sent
    property string missing: "" ///< message on missing input, shown after the first try to send
    property bool tried: false ///< the user has tried to send
    property bool gated: false ///< the request needs the permission to change settings
    property Item firstField: null
    property bool busy: false  ///< the user waits for a result
    property int pending: 0    ///< number of outstanding signals
    property int timeoutSeconds: 30  ///< seconds to wait for signals
    property var stationNames: []     ///< stations of the last request
    property string error: ""
    readonly property bool ready: valid && !busy && pending === 0 && (!gated || app.settingAllowed)

    /// The user has confirmed. The handler sends the request and calls finish() with its result.
    signal submitted()

    function submit() {
        tried = true;
        if (ready && !missing)
            submitted();
    }

    /// Call it before a request, because signals may come before the call returns.
    /// @param signals    number of signals that will come
    /// @param relayPaths of the stations that will answer; empty for the server
    function begin(signals, relayPaths) {
        error = "";
        busy = true;
        pending = signals;
        stationNames = app.topology.stationNames(relayPaths);
        timeout.restart();
    }

    /// Counts a signal.
    /// @return true if it belongs to the request that the user waits for
    function noteSignal() {
        const own = busy;
        if (pending === 1)
            timeout.stop();
        pending = Math.max(0, pending - 1);
        return own;
    }

    /// Call it with the result of the request. A request that was not sent has no further signal.
    function noteSent(accepted) {
        if (!accepted && pending > 0 && noteSignal())
            finish(qsTr("The request could not be sent."));
    }

    /// Call it for a signal.
    /// @param problem an error message; empty for success
    function noteOutcome(problem) {
        if (noteSignal())
            finish(problem);
    }

    /// Ends the request.
    /// @param problem an error message; an empty text closes the dialog
    function finish(problem) {
        busy = false;
        if (pending === 0)
            timeout.stop();
        error = problem;
        if (problem === "")
            close();
    }

    readonly property Timer timeout: Timer {
        interval: 1000 * dialog.timeoutSeconds
        onTriggered: {
            const waited = dialog.busy;
            dialog.pending = 0;
            if (waited)
                dialog.finish(qsTr("No answer has come within %1 seconds. The request may still be "
                                   + "executed: refresh the list before you try again.")
                              .arg(dialog.timeoutSeconds));
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
        awaited: dialog.busy ? dialog.stationNames.join(", ") || qsTr("the server")
                             : qsTr("the answer to the last request")
        problem: dialog.error
        hint: dialog.gated ? dialog.app.lockReason : ""
        onAccepted: dialog.submit()
        onRejected: dialog.close()
    }
}
