.pragma library

/// The plug-in's object for callers in QML; each call is noted with its arguments and its result.
function recorded(plugin, recorder) {
    const methods = new Map();

    function method(name) {
        return (...args) => {
            const call = recorder.beginCall(name, args);
            let result;
            try {
                result = plugin[name](...args);
            } finally {
                recorder.end(call, result);
            }
            return result;
        };
    }

    return new Proxy(plugin, {
        get: (target, name) => {
            const member = target[name];
            if (typeof member !== "function" || member.connect !== undefined)
                return member; // a signal is something to connect to
            if (!methods.has(name))
                methods.set(name, method(name));
            return methods.get(name);
        }
    });
}
