import QtTest
import Client.Common
import Client.Dialogs

/// Tests days and moments in the server's time zone.
TestCase {
    name: "Days"

    DateRanges { id: ranges }
    DateTimeTexts { id: texts }

    // The clocks are put forward on Sunday 2026-03-29 in Berlin, and back on 2026-10-25.
    function test_daysHaveTheirLengthInTheServersZone_data() {
        const { Today, Yesterday, ThisWeek, Days } = DateRanges;
        return [
            ["23 hours", "Europe/Berlin", Today, "03-29T12:00Z", "03-28T23:00Z", "03-29T22:00Z"],
            ["25 hours", "Europe/Berlin", Yesterday, "10-26T12:00Z", "10-24T22:00Z", "10-25T23:00Z"],
            ["next day there", "Asia/Tokyo", Today, "03-29T16:00Z", "03-29T15:00Z", "03-30T15:00Z"],
            ["Sunday first", "Europe/Berlin", ThisWeek, "03-29T12:00Z", "03-28T23:00Z", "04-04T22:00Z"],
            ["no midnight", "Africa/Cairo", Days, "", "04-23T22:00Z", "04-24T21:00Z", "04-24", "04-24"],
            ["turned round", "no zone", Days, "", "03-01T00:00Z", "03-03T00:00Z", "03-02", "03-01"]
        ].map(row => ({ tag: row[0], row: row.slice(1) }));
    }
    function test_daysHaveTheirLengthInTheServersZone({ row }) {
        const [zone, preset, now, start, end, ...days] = row;
        ranges.timeZone = zone;
        const found = ranges.range(preset, Date.parse("2026-" + now) || 0,
                                   ...days.map(day => "2026-" + day));
        compare(new Date(found.startTimestamp), new Date("2026-" + start));
        compare(new Date(found.endTimestamp + 1), new Date("2026-" + end));
    }

    function test_allIncludesEveryMoment() {
        const all = ranges.range(DateRanges.Days, 0, "no day", "2026-01-01");
        compare([all.startTimestamp, all.endTimestamp], [-(2 ** 63), 2 ** 63 - 1024]);
    }

    function test_typedTextsGiveMoments() {
        texts.timeZone = "Europe/Berlin";
        compare(texts.momentOf("2026-07-01 08:30:15"), Date.parse("2026-07-01T06:30:15Z"));
        compare(texts.momentOf(" 2026-07-01 08:30 "), Date.parse("2026-07-01T06:30:00Z"));
        for (const none of ["2026-03-29 02:30:00", "2026-02-30 10:00:00", "yesterday"])
            compare(texts.momentOf(none), undefined, none);
        // This computer's zone skips this time, the station's zone does not.
        texts.timeZone = "America/New_York";
        compare(texts.momentOf("2026-03-29 02:30:00"), Date.parse("2026-03-29T06:30:00Z"));
    }
}
