import QtQuick
import QtTest
import Client.Timeline

TestCase {
    id: testCase

    readonly property real origin: 2800000 ///< time at the left end of a strip
    readonly property real msPerPixel: 100
    name: "Timelines"

    Component { id: axisComponent; TimeAxis { range: VisibleRange {} } }
    /// The layout of a timeline 600 pixels wide.
    Component {
        id: layoutComponent
        MarkLayout {
            range: VisibleRange {}
            width: 600
            lanes: 3
            camera: ({ cameraID: "c", relayPath: "r" })
            Component.onCompleted: range.show(testCase.origin, testCase.origin + 60000)
        }
    }
    /// A source with the roles of a timeline model.
    Component {
        id: sourceComponent
        ListModel {
            function put(row, start, end, camera = "c", relayPath = "r") { // times in pixels
                const [from, to] = [start, end].map(x => testCase.origin + x * testCase.msPerPixel);
                insert(row, { startTimestampRole: from, endTimestampRole: to, cameraIDRole: camera, relayPathRole: relayPath });
            }
        }
    }

    function test_ticksAreRoundInTheZone_data() {
        return [
            ["hours", "Europe/Berlin", "2026-06-30T21:30Z", 180, 360, "Wed 1 Jul@60 01:00@180 02:00@300"],
            ["clocks go forward", "Europe/Berlin", "2026-03-28T23:00Z", 180, 360, "Sun 29 Mar@0 01:00@120 03:00@240 04:00@360"],
            ["clocks go back", "Europe/Berlin", "2026-10-24T22:00Z", 240, 480, "Sun 25 Oct@0 01:00@120 02:00@240 02:00@360 03:00@480"],
            ["a short night in long steps", "Europe/Berlin", "2026-03-28T23:00Z", 1440, 288, "Sun 29 Mar@0 06:00@60 12:00@132 18:00@204 Mon 30 Mar@276"],
            ["a long night in long steps", "Europe/Berlin", "2026-10-24T22:00Z", 1500, 300, "Sun 25 Oct@0 06:00@84 12:00@156 18:00@228 Mon 26 Oct@300"],
            ["half an hour back", "Australia/Lord_Howe", "2026-04-04T13:00Z", 210, 420, "Sun 5 Apr@0 01:00@120 02:00@300 03:00@420"],
            ["no midnight", "America/Havana", "2026-03-08T04:30Z", 150, 300, "Sun 8 Mar@60 02:00@180 03:00@300"],
            ["seconds", "Europe/Berlin", "2026-07-01T20:59:55Z", 1, 210, "23:00:00@18 23:00:30@123"],
            ["narrow", "UTC", "2026-07-01T00:00Z", 11520, 256, "Thu 2 Jul@32 Sat 4 Jul@96 Mon 6 Jul@160 Wed 8 Jul@224"],
            ["unknown zone", "Nowhere/City", "2026-07-01T00:00Z", 60, 120, "Wed 1 Jul@0 01:00@120"]
        ].map(([tag, zone, from, minutes, width, ticks]) => ({ tag, zone, from, minutes, width, ticks }));
    }
    function test_ticksAreRoundInTheZone(data) {
        const axis = createTemporaryObject(axisComponent, testCase, { timeZone: data.zone, width: data.width });
        const from = Date.parse(data.from);
        axis.range.show(from, from + data.minutes * 60000);
        axis.update();
        const read = (row, role) => axis.data(axis.index(row, 0), role);
        const ticks = Array.from({ length: axis.rowCount() }, (_, row) =>
            read(row, TimeAxis.LabelRole) + "@" + Math.round(read(row, TimeAxis.XRole)));
        compare(ticks.join(" "), data.ticks);
    }

    /// Returns the bars of the next frame as "x+width/lane", with "*count" if it is not 1.
    function bars(layout, shift = 0) {
        layout.update();
        return Array.from({ length: layout.rowCount() }, (_, i) => layout.row(i)).map(bar =>
            `${bar.barX + shift}+${bar.barWidth}/${bar.lane}` + (bar.count > 1 ? "*" + bar.count : "")
                + (bar.over ? "o" : "")).join(" ");
    }

    function test_bookmarksAreArrangedAsBars_data() {
        return [
            ["no lane is free", "0-50 5-55 10-60 20-70 90-100", "0+50/0 5+50/1 10+50/2 20+50/2o 90+10/0"],
            ["one would hide the other", "0-50 5-55 10-60 11-62 12-59", "0+50/0 5+50/1 10+52/2*3"],
            ["short ones over long ones", "0-90 0-91 0-92 20-21 22-23 40-70 95-99", "0+90/0 0+91/1 0+92/2 20+7/2*2o 40+30/2o 95+4/0"],
            ["short ones that touch", "1-2 3-4 6-6", "1+26/0*3"],
            ["no endless bar", "24-24 27-27 30-30 33-33", "23+4/0*2 30+25/0*2"],
            ["over a long one", "0-90 10-11 12-13", "0+90/0 10+17/1*2"],
            ["out of sight", "-90--50 650-700 20-40", "20+20/0"],
            ["from end to end", "-900-900", "-8+616/0"],
            ["of another camera or station", "0-20d 0-20s 0-20", "0+20/0"]
        ].map(([tag, marks, bars]) => ({ tag, marks, bars }));
    }
    function test_bookmarksAreArrangedAsBars(data) {
        const source = createTemporaryObject(sourceComponent, testCase);
        for (const mark of data.marks.split(" ")) {
            const [, start, end, camera, relayPath] = mark.match(/(-?\d+)-(-?\d+)(d?)(s?)/);
            source.put(source.count, Number(start), Number(end), camera || "c", relayPath || "r");
        }
        const layout = createTemporaryObject(layoutComponent, testCase, { source: source });
        compare(bars(layout), data.bars);
        layout.range.moveBy(-14 * msPerPixel);
        verify(bars(layout, -14) === data.bars || data.tag === "from end to end");
    }

    function test_topmostBarIsFound() {
        const source = createTemporaryObject(sourceComponent, testCase);
        for (const end of [90, 91, 92])
            source.put(source.count, 0, end);
        source.put(3, 20, 40);
        const layout = createTemporaryObject(layoutComponent, testCase, { source: source });
        layout.update();
        compare([19, 30, 41, 93].map(x => layout.rowAt(x, 2)), [2, 3, 2, -1]);
    }

    /// After changes a layout equals a new one for the same source.
    function test_barsFollowTheirSource() {
        const source = createTemporaryObject(sourceComponent, testCase);
        const layout = createTemporaryObject(layoutComponent, testCase, { source: source });
        const random = limit => Math.floor(Math.random() * limit);
        for (let round = 0; round < 20; ++round) {
            const row = random(source.count + 1);
            for (let i = 0; i < 4; ++i)
                source.put(row + random(i + 1), random(600), random(600), random(3) ? "c" : "d");
            source.remove(random(source.count - 1), 2);
            source.setProperty(row, "startTimestampRole", origin + random(60000));
            const fresh = createTemporaryObject(layoutComponent, testCase, { source: source });
            compare(bars(layout), bars(fresh));
        }
        source.destroy();
        tryVerify(() => bars(layout) === "");
    }

    function test_severalRowsCauseOneUpdate() {
        const source = createTemporaryObject(sourceComponent, testCase);
        const layout = createTemporaryObject(layoutComponent, testCase, { source: source });
        let changes = 0;
        layout.rowsInserted.connect(() => changes += 1);
        for (let i = 0; i < 5000; ++i)
            source.put(i, i / 10, i / 10 + 1);
        verify(bars(layout).split(" ").length < 100);
        compare(changes, 1);
    }
}
