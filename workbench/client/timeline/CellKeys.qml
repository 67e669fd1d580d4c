import QtQuick
import Client.Timeline

/// The keys of a view cell.
QtObject {
    id: keys

    required property VisibleRange range
    required property PlayHead head
    required property CellContent content ///< null for an empty cell

    signal liveRequested()
    signal clearRequested()
    signal inStepToggled()

    /// Functions by key code. They need a cell with a camera.
    readonly property var actions: ({
        [Qt.Key_Left]: () => keys.pan(-0.1),
        [Qt.Key_Right]: () => keys.pan(0.1),
        [Qt.Key_PageUp]: () => keys.pan(-1),
        [Qt.Key_PageDown]: () => keys.pan(1),
        [Qt.Key_Plus]: () => keys.zoom(0.8),
        [Qt.Key_Equal]: () => keys.zoom(0.8),
        [Qt.Key_Minus]: () => keys.zoom(1.25),
        [Qt.Key_Space]: () => keys.head.playing = !keys.head.playing,
        [Qt.Key_Home]: () => keys.liveRequested(),
        [Qt.Key_N]: () => keys.content.goToBookmark(true),
        [Qt.Key_B]: () => keys.content.goToBookmark(false),
        [Qt.Key_Z]: () => keys.content.zoomToBookmark(),
        [Qt.Key_I]: () => keys.inStepToggled(),
        [Qt.Key_M]: () => keys.content.mark(),
        [Qt.Key_A]: () => keys.content.addHere(),
        [Qt.Key_Escape]: () => keys.content.markedFrom = NaN,
        [Qt.Key_Delete]: () => keys.clearRequested()
    })
    /// The same with Shift.
    readonly property var shiftedActions: ({
        [Qt.Key_Left]: () => keys.step(-0.02),
        [Qt.Key_Right]: () => keys.step(0.02)
    })

    function pan(share) {
        range.moveBy(share * range.span);
    }

    /// Moves the play head by a share of what is visible.
    function step(share) {
        head.seek(head.position + share * range.span);
        range.reveal(head.position);
    }

    /// Zooms around the play head if it is visible, otherwise around the middle.
    function zoom(factor) {
        const seen = head.position >= range.from && head.position <= range.to;
        range.zoomAbout(seen ? head.position : range.from + range.span / 2, factor);
    }

    /// @return true if the event was handled
    function handle(event) {
        const foreign = Qt.ControlModifier | Qt.AltModifier | Qt.MetaModifier;
        const shifted = event.modifiers & Qt.ShiftModifier ? shiftedActions[event.key] : undefined;
        const action = shifted ?? actions[event.key];
        if (!action || !content || event.modifiers & foreign)
            return false;
        if (event.key === Qt.Key_Escape && isNaN(content.markedFrom))
            return false;
        action();
        return true;
    }
}
