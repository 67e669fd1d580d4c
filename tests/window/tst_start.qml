import QtQuick

WindowTest {
    name: "Start"

    function test_bookmarksOfAllStationsArrive() {
        let stored = 0;
        for (const station of bench.stations)
            stored += lab.stored(station.relayPath).length;
        verify(stored > 50, "more than a page");
        compare(bookmarkCount(), stored);
    }
}
