import QtQml
import QtTest
import "../../workbench/tour"

// The runner must report failed steps: a tour that can't fail would prove nothing.
TestCase {
    id: testCase
    name: "TourRunner"

    readonly property QtObject plugin: QtObject {
        signal answered(int number)

        function twice(number) { return 2 * number; }
    }

    readonly property QtObject workbench: QtObject {
        property bool finished: false

        signal trafficPassed

        function signalNames() { return ["answered"]; }
        function forgetTraffic() { }
        function finish() { finished = true; }
    }

    readonly property QtObject transcript: QtObject {
        property var lines: []

        function printStep(title) { lines.push("step " + title); }
        function printCall(name, args) { lines.push("call " + name + "(" + args + ")"); }
        function printResult(result) { lines.push("gives " + result); }
        function printSignal(name, args) { lines.push("signal " + name + "(" + args + ")"); }
        function printCheck(holds, what) {
            lines.push((holds ? "ok " : "FAILED ") + what.split("\n")[0]);
        }
    }

    Component {
        id: component

        TourRunner {
            plugin: testCase.plugin
            workbench: testCase.workbench
            transcript: testCase.transcript
        }
    }

    function test_transcriptHasEveryEvent_data() {
        let arrived = false;
        return [
            { tag: "calls and signals", lines: ["step one", "call twice(21)", "gives 42", "ok sum",
                                                "signal answered(7)", "ok not lost"],
              steps: function* (tour) {
                  tour.step("one");
                  tour.expect(tour.bookmarks.twice(21) === 42, "sum");
                  plugin.answered(7); // before the program waits for it
                  const [number] = yield tour.until("answered");
                  tour.expect(number === 7, "not lost");
              } },
            { tag: "a step forgets earlier signals", lines: ["signal answered(7)", "step two",
                  "FAILED waited for answered, nothing came for 0.05 s"],
              steps: function* (tour) {
                  plugin.answered(7);
                  tour.step("two");
                  yield tour.until("answered");
              } },
            { tag: "waiting ends with the next traffic", lines: ["signal answered(1)", "ok went on"],
              steps: function* (tour) {
                  plugin.answered(1); // a signal of another kind does not end it
                  Qt.callLater(() => { arrived = true; workbench.trafficPassed(); });
                  yield tour.untilTrue("traffic", () => arrived);
                  tour.expect(arrived, "went on");
              } },
            { tag: "a false expectation", lines: ["FAILED no"],
              steps: function* (tour) { tour.expect(false, "no"); } },
            { tag: "an expectation that is no bool", lines: ["FAILED no"],
              steps: function* (tour) { tour.expect(undefined, "no"); } },
            { tag: "a condition that never holds",
              lines: ["FAILED waited for rain, nothing came for 0.05 s"],
              steps: function* (tour) { yield tour.untilTrue("rain", () => false); } },
            { tag: "an exception", lines: ["FAILED Error: broken"],
              steps: function* (tour) { throw new Error("broken"); } }
        ];
    }

    function test_transcriptHasEveryEvent(row) {
        const runner = component.createObject(testCase);
        transcript.lines = [];
        workbench.finished = false;
        runner.timeout.interval = 50;
        runner.play(row.steps(runner));
        tryVerify(() => workbench.finished);
        runner.destroy();
        compare(transcript.lines, row.lines);
    }
}
