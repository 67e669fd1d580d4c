import QtQml
import QtQml.Models

/// Reads the rows of one view cell's timeline model, as a timeline bar does.
QtObject {
    id: timeline

    /// The result of getBookmarkModelForTimeline().
    required property var model

    readonly property int count: instantiator.count

    readonly property Instantiator instantiator: Instantiator {
        id: instantiator

        model: timeline.model

        QtObject {
            required property string bookmarkIDRole
            required property string cameraNameRole
            required property string descRole
            required property string dispTimeRangeRole
        }
    }

    function rows() {
        const list = [];
        for (let i = 0; i < instantiator.count; ++i)
            list.push(instantiator.objectAt(i));
        return list;
    }

    /// @return the rows as lists of column texts
    function columns() {
        return rows().map(row => [row.dispTimeRangeRole, row.cameraNameRole, row.descRole]);
    }

    function shows(bookmarkID) {
        return rows().some(row => row.bookmarkIDRole === bookmarkID);
    }
}
