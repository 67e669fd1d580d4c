import QtQuick
import Preparation

WindowTest {
    id: test
    name: "Start"

    Component {
        id: preparationWindow

        PreparationWindow {}
    }

    function test_preparationCanBeCancelled_data() {
        return [{ tag: "first bookmarks, by mouse", bookmarks: 1000000, lines: 0, byKey: false,
                  says: /^\d.*000 of 1.000.000 bookmarks were created/, summary: /^$/ },
                { tag: "import, by key", bookmarks: 0, lines: 400000, byKey: true,
                  says: /was cancelled; the rest of the file is missing/, summary: /^Imported [1-9]\d* bookmarks, sk/ }];
    }
    function test_preparationCanBeCancelled(data) {
        const preparation = lab.prepare(data.bookmarks, data.lines);
        const start = createTemporaryObject(preparationWindow, test, { preparation: preparation });
        tryCompare(start, "visible", true);
        start.requestActivate();
        tryCompare(start, "active", true);
        const part = name => findChild(start.contentItem, name);
        tryVerify(() => part("preparationBar").value > 0);
        data.byKey ? keyClick(Qt.Key_Escape) : mouseClick(part("cancelPreparation"));
        tryVerify(() => !preparation.running);
        verify(data.says.test(part("preparationMessages").text), preparation.report);
        verify(data.summary.test(preparation.summary), preparation.summary);
        let read = false;
        preparation.acknowledged.connect(() => read = true);
        tryVerify(() => part("acknowledge").activeFocus);
        keyClick(Qt.Key_Return);
        verify(read);
    }

    function test_listHasBookmarksOfAllStations() {
        let stored = 0;
        for (const station of workbench.stations)
            stored += lab.stored(station.relayPath).length;
        verify(stored > 50, "more than a page");
        compare(bookmarkCount(), stored);
    }
}
