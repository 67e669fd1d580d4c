import QtQml

/// Plays a program of steps against the plug-in. A program is a generator: it calls the plug-in's
/// methods through `bookmarks` and yields the conditions that it waits for:
///
///     const [success] = yield until("addBookmarkResponsed");
QtObject {
    id: runner

    /// The plug-in's object.
    required property var plugin
    /// The WorkbenchContext.
    required property var workbench
    /// The Transcript.
    required property var transcript

    /// Forwards calls to the plug-in and prints them with their results.
    readonly property var bookmarks: new Proxy(plugin, {
        get: (target, name) => (...args) => {
            runner.transcript.printCall(name, args);
            const result = target[name](...args);
            runner.transcript.printResult(result);
            return result;
        }
    })

    property var program: null    ///< the running generator
    property var awaited: null    ///< the condition that it waits for; null while it runs
    property var result: undefined ///< the result of the last condition
    property var received: []     ///< emitted signals that the program has not waited for
    property var listeners: []    ///< the functions connected to the plug-in's signals

    readonly property Timer timeout: Timer {
        interval: 10000
        onTriggered: runner.giveUp("nothing came for " + interval / 1000 + " s")
    }

    // Resumes the program from the event loop, not from inside a call of the plug-in.
    readonly property Timer resumeTimer: Timer {
        interval: 0
        onTriggered: runner.resume()
    }

    function play(steps) {
        for (const name of workbench.signalNames()) {
            const listener = (...args) => runner.receive(name, args);
            plugin[name].connect(listener);
            listeners.push({ name: name, listener: listener });
        }
        workbench.trafficPassed.connect(check);
        program = steps;
        resume();
    }

    function finish() {
        for (const { name, listener } of listeners)
            plugin[name].disconnect(listener);
        workbench.trafficPassed.disconnect(check);
        workbench.finish();
    }

    /// Returns the condition that a signal is emitted. Its result is the list of arguments.
    function until(signalName) {
        return { describe: signalName, poll: () => runner.takeSignal(signalName) };
    }

    /// Returns the condition that a function returns true.
    function untilTrue(description, condition) {
        return { describe: description, poll: () => condition() ? true : undefined };
    }

    function step(title) {
        received = [];
        workbench.forgetTraffic();
        transcript.printStep(title);
    }

    function expect(condition, what) {
        transcript.printCheck(condition === true, what);
    }

    function receive(name, args) {
        transcript.printSignal(name, args);
        received.push({ name: name, args: args });
        check();
    }

    function takeSignal(name) {
        const index = received.findIndex(entry => entry.name === name);
        return index < 0 ? undefined : received.splice(index, 1)[0].args;
    }

    /// Resumes the program if its condition holds.
    function check() {
        if (!awaited)
            return;
        result = awaited.poll();
        if (result === undefined)
            return;
        awaited = null;
        timeout.stop();
        resumeTimer.start();
    }

    function resume() {
        let next;
        try {
            next = program.next(result);
        } catch (error) {
            transcript.printCheck(false, error + "\n" + error.stack);
            finish();
            return;
        }
        if (next.done) {
            finish();
            return;
        }
        awaited = next.value;
        timeout.restart();
        check();
    }

    function giveUp(reason) {
        transcript.printCheck(false, "waited for " + awaited.describe + ", " + reason);
        finish();
    }
}
