/// The plug-in's object for callers in QML; each call is noted with its arguments and its result.
export function recorded(plugin, recorder) {
    const methods = new Map();

    function method(name) {
        const noted = (...args) => {
            const call = recorder.beginCall(name, args);
            let result;
            try {
                result = plugin[name](...args);
            } catch (error) {
                recorder.end(call, { exception: String(error) });
                throw error;
            }
            recorder.end(call, result);
            return result;
        };
        // A signal is a function too, but one to connect to. The engine's own "connect" of all
        // functions can't be assigned to.
        for (const verb of ["connect", "disconnect"])
            Object.defineProperty(noted, verb, { value: slot => plugin[name][verb](slot) });
        return noted;
    }

    return new Proxy(plugin, {
        get: (target, name) => {
            if (!methods.has(name)) {
                if (typeof target[name] !== "function")
                    return target[name];
                methods.set(name, method(name));
            }
            return methods.get(name);
        }
    });
}
