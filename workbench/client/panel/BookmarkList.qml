pragma ComponentBehavior: Bound
import QtQuick
import QtQuick.Controls
import Client.Panel

/// Lists the bookmarks of the page. Selection by mouse and keys works as in a file list.
ListView {
    id: list

    required property PageQuery query
    readonly property PageModel page: query.model
    required property RecordSelection selection
    required property bool byDate ///< groups are dates, so rows show only times

    property int anchor: 0 ///< start of a Shift selection, an index in the whole result
    readonly property int longestRange: 1000 ///< bookmarks; more would take too long

    /// Added bookmarks to which the list has not scrolled yet, as in AppState.added.
    property var notScrolledTo: null

    signal showWanted(var record)
    signal editWanted(var records)
    signal deleteWanted(var records)

    model: page
    clip: true
    activeFocusOnTab: true
    keyNavigationEnabled: false
    boundsBehavior: Flickable.StopAtBounds
    cacheBuffer: 0 // rows created in advance would be incomplete when the next page comes
    reuseItems: true
    Accessible.role: Accessible.List
    Accessible.name: qsTr("Bookmarks")
    ScrollBar.vertical: ScrollBar {}
    delegate: BookmarkRow {
        byDate: list.byDate
        focused: list.activeFocus
        framed: list.query.app.isOneOf(record, list.query.app.added)
        onPressed: modifiers => list.press(index, modifiers)
        onShowWanted: list.show(index)
    }

    /// Scrolls to the first added bookmark if the page has it.
    function showAdded() {
        for (let row = 0; notScrolledTo !== null && row < count; ++row) {
            if (!query.app.isOneOf(page.recordAt(row), notScrolledTo))
                continue;
            positionViewAtIndex(row, ListView.Contain);
            notScrolledTo = null;
        }
    }

    Connections {
        target: list.query
        function onLoaded() {
            list.showAdded();
        }
    }
    Connections {
        target: list.query.app
        function onAddedChanged() {
            list.notScrolledTo = list.query.app.added;
        }
    }

    function show(row) {
        if (row >= 0 && row < count)
            showWanted(page.recordAt(row));
    }

    function press(row, modifiers) {
        forceActiveFocus(Qt.MouseFocusReason);
        moveTo(row, modifiers & Qt.ShiftModifier, modifiers & Qt.ControlModifier);
        if (modifiers & Qt.ControlModifier)
            selection.toggle(page.recordAt(row));
        else if (!(modifiers & Qt.ShiftModifier))
            selection.setRecords([page.recordAt(row)]);
    }

    /// Makes a row the current one.
    /// @param extending select from the anchor to the row
    /// @param adds      keep the other selected bookmarks
    function moveTo(row, extending, adds) {
        if (count === 0)
            return;
        currentIndex = Math.min(Math.max(row, 0), count - 1);
        const place = query.firstShown - 1 + currentIndex;
        if (!extending)
            anchor = place;
        else if (Math.abs(place - anchor) >= longestRange)
            query.app.notice(qsTr("At most %L1 bookmarks can be selected with Shift.")
                                .arg(longestRange), true);
        else if (adds)
            selection.add(query.recordsBetween(anchor, place));
        else
            selection.setRecords(query.recordsBetween(anchor, place));
    }

    /// Shows the first row of another page.
    /// @param anew the result has changed, so a Shift selection can't continue
    function turn(page, anew) {
        currentIndex = 0;
        if (anew || selection.count === 0)
            anchor = page * query.pageSize;
        positionViewAtBeginning();
    }

    /// @return the bookmarks for an action: the selected ones, or the current one
    function targets() {
        return selection.count > 0 ? selection.records()
                                   : page.recordsBetween(currentIndex, currentIndex);
    }

    readonly property int rowsInView: Math.max(1, Math.floor(height / 50))
    readonly property var steps: new Map([
        [Qt.Key_Up, -1], [Qt.Key_Down, 1], [Qt.Key_PageUp, -rowsInView],
        [Qt.Key_PageDown, rowsInView], [Qt.Key_Home, -count], [Qt.Key_End, count]
    ])

    Keys.onPressed: event => {
        const shift = event.modifiers & Qt.ShiftModifier;
        const control = event.modifiers & Qt.ControlModifier;
        event.accepted = true;
        if (steps.has(event.key) && !control)
            moveTo(currentIndex + steps.get(event.key), shift, false);
        else if (event.key === Qt.Key_A && control)
            selection.add(page.recordsBetween(0, count - 1));
        else if (event.key === Qt.Key_Space && count > 0)
            selection.toggle(page.recordAt(currentIndex));
        else if (event.key === Qt.Key_Return || event.key === Qt.Key_Enter)
            show(currentIndex);
        else if (event.key === Qt.Key_F2 && targets().length > 0)
            editWanted(targets());
        else if (event.key === Qt.Key_Delete && targets().length > 0)
            deleteWanted(targets());
        else if (event.key === Qt.Key_Escape && selection.count > 0)
            selection.clear();
        else
            event.accepted = false;
    }
}
