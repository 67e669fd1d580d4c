import QtQml

// Plays a program of steps against the plug-in. A program is a generator: it calls the plug-in's
// methods through `bookmarks`, and `yield`s what it waits for.
//
//     const [success] = yield until("addBookmarkResponsed");
QtObject {
    id: runner

    /// The plug-in's object, as the client offers it to QML.
    required property var plugin
    /// What lies around the plug-in: the stations, other clients, the host.
    required property var bench
    /// Where everything that happens is written down.
    required property var transcript

    /// The plug-in again; every call through it is printed with its result.
    readonly property var bookmarks: new Proxy(plugin, {
        get: (target, name) => (...args) => {
            runner.transcript.printCall(name, args);
            const result = target[name](...args);
            runner.transcript.printResult(result);
            return result;
        }
    })

    property var program: null    ///< the running generator
    property var awaited: null    ///< what it waits for; null while it runs
    property var result: undefined ///< what it has waited for
    property var received: []     ///< signals of the plug-in that nobody has waited for yet
    property var listeners: []    ///< what was connected to the plug-in's signals

    readonly property Timer patience: Timer {
        interval: 10000
        onTriggered: runner.giveUp("nothing came for " + interval / 1000 + " s")
    }

    // A program does not go on from within the plug-in's own call.
    readonly property Timer resumption: Timer {
        interval: 0
        onTriggered: runner.resume()
    }

    function play(steps) {
        for (const name of bench.signalNames()) {
            const listener = (...args) => runner.take(name, args);
            plugin[name].connect(listener);
            listeners.push({ name: name, listener: listener });
        }
        bench.trafficPassed.connect(check);
        program = steps;
        resume();
    }

    function finish() {
        for (const { name, listener } of listeners)
            plugin[name].disconnect(listener);
        bench.trafficPassed.disconnect(check);
        bench.finish();
    }

    /// Waits for the next emission of a signal; gives the list of its arguments.
    function until(signalName) {
        return { describe: signalName, poll: () => runner.claim(signalName) };
    }

    /// Waits until a condition holds.
    function untilTrue(description, condition) {
        return { describe: description, poll: () => condition() ? true : undefined };
    }

    function step(title) {
        received = [];
        bench.forgetTraffic();
        transcript.printStep(title);
    }

    function expect(condition, what) {
        transcript.printCheck(condition === true, what);
    }

    function take(name, args) {
        transcript.printSignal(name, args);
        received.push({ name: name, args: args });
        check();
    }

    function claim(name) {
        const index = received.findIndex(entry => entry.name === name);
        return index < 0 ? undefined : received.splice(index, 1)[0].args;
    }

    /// Goes on with the program when what it waits for is there. Cheap to call too often.
    function check() {
        if (!awaited)
            return;
        result = awaited.poll();
        if (result === undefined)
            return;
        awaited = null;
        patience.stop();
        resumption.start();
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
        patience.restart();
        check();
    }

    function giveUp(reason) {
        transcript.printCheck(false, "waited for " + awaited.describe + ", " + reason);
        finish();
    }
}
