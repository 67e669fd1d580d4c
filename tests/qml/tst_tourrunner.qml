import QtQml
import QtTest
import "../../workbench/tour"

// The runner must notice what a step does not get: a tour that can't fail would prove nothing.
TestCase {
    id: testCase
    name: "TourRunner"

    readonly property QtObject plugin: QtObject {
        signal answered(int number)

        function twice(number) { return 2 * number; }
    }

    readonly property QtObject bench: QtObject {
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
            bench: testCase.bench
            transcript: testCase.transcript
        }
    }

    function play(steps) {
        transcript.lines = [];
        bench.finished = false;
        const runner = component.createObject(testCase);
        runner.patience.interval = 50;
        runner.play(steps(runner));
        tryVerify(() => bench.finished);
        runner.destroy();
        return transcript.lines;
    }

    function test_callsAndSignalsAreWrittenDown() {
        const lines = play(function* (tour) {
            tour.step("one");
            tour.expect(tour.bookmarks.twice(21) === 42, "the sum is right");
            plugin.answered(7); // before anybody waits for it
            const [number] = yield tour.until("answered");
            tour.expect(number === 7, "the signal is not lost");
        });
        compare(lines, ["step one", "call twice(21)", "gives 42", "ok the sum is right",
                        "signal answered(7)", "ok the signal is not lost"]);
    }

    function test_aStepForgetsEarlierSignals() {
        const lines = play(function* (tour) {
            tour.step("one");
            plugin.answered(7);
            tour.step("two");
            yield tour.until("answered");
        });
        compare(lines.slice(-1), ["FAILED waited for answered, nothing came for 0.05 s"]);
    }

    function test_whatDoesNotHoldIsAFailure_data() {
        return [
            { tag: "no", steps: function* (tour) { tour.expect(false, "no"); } },
            { tag: "no bool", steps: function* (tour) { tour.expect(undefined, "no bool"); } },
            { tag: "waited for rain, nothing came for 0.05 s",
              steps: function* (tour) { yield tour.untilTrue("rain", () => false); } },
            { tag: "TypeError", steps: function* (tour) { tour.bookmarks.nonsense(); } }
        ];
    }

    function test_whatDoesNotHoldIsAFailure(row) {
        const lines = play(row.steps);
        verify(lines[lines.length - 1].startsWith("FAILED " + row.tag));
    }

    function test_waitingEndsWithTheNextTraffic() {
        let arrived = false;
        const lines = play(function* (tour) {
            plugin.answered(1); // a signal of another kind does not end it
            Qt.callLater(() => { arrived = true; bench.trafficPassed(); });
            yield tour.untilTrue("traffic", () => arrived);
            tour.expect(arrived, "it went on");
        });
        compare(lines.slice(-1), ["ok it went on"]);
    }
}
