pragma ComponentBehavior: Bound
import QtQuick
import QtQuick.Layouts
import Client.Common

/// The grid of view cells. There are always nine; the unused ones are hidden and keep their state.
GridLayout {
    id: grid

    required property AppState app
    required property PlayClock clock

    property int shownCount: 4
    property int activeIndex: 0
    readonly property int count: cells.count
    /// Null until the cells are created.
    readonly property ViewCell activeCell: count > 0 ? at(activeIndex) : null

    signal inStepToggled()
    /// The user has marked a range for a new bookmark, in milliseconds since the epoch.
    signal rangeMarked(var camera, real start, real end)

    function at(index) {
        return cells.itemAt(index) as ViewCell;
    }

    /// @return the index of the first empty cell, or of the active one
    function indexForNew() {
        for (let i = 0; i < shownCount; ++i) {
            if (!at(i).occupied)
                return i;
        }
        return Math.min(activeIndex, shownCount - 1);
    }

    /// @return the index of the cell that shows a camera, or -1
    function indexShowing(camera) {
        for (let i = 0; i < shownCount; ++i) {
            if (at(i).occupied && at(i).camera.key === camera.key)
                return i;
        }
        return -1;
    }

    onShownCountChanged: activeIndex = Math.min(activeIndex, shownCount - 1)

    columns: Math.ceil(Math.sqrt(shownCount))
    rowSpacing: 4
    columnSpacing: 4

    Repeater {
        id: cells
        model: 9
        ViewCell {
            required property int index
            objectName: "cell" + index
            app: grid.app
            clock: grid.clock
            number: index
            visible: index < grid.shownCount
            active: index === grid.activeIndex
            onActiveFocusChanged: if (activeFocus) grid.activeIndex = index
            onInStepToggled: grid.inStepToggled()
            onRangeMarked: (camera, start, end) => grid.rangeMarked(camera, start, end)
            Layout.fillWidth: true
            Layout.fillHeight: true
            Layout.preferredWidth: 1 // equal sizes
            Layout.preferredHeight: 1
        }
    }

    Keys.onPressed: event => {
        if (!(event.modifiers & Qt.ControlModifier))
            return;
        const step = {
            [Qt.Key_Left]: -1, [Qt.Key_Right]: 1,
            [Qt.Key_Up]: -columns, [Qt.Key_Down]: columns
        }[event.key] ?? 0;
        const next = activeIndex + step;
        if (step !== 0 && next >= 0 && next < shownCount)
            at(next).forceActiveFocus();
        event.accepted = step !== 0;
    }
}
