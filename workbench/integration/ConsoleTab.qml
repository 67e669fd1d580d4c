import QtQuick
import QtQuick.Controls
import Integration

/// Calls any method of the plug-in's object with typed arguments, and counts its signals.
SplitView {
    id: tab
    objectName: "consoleTab"

    required property var plugin
    required property var workbench

    property var method: null ///< the chosen method, as in PluginConsole.methods
    property var texts: []    ///< initial texts of its arguments
    property var history: []  ///< calls, newest first: maps of "method" and "texts"

    function choose(chosen, arguments_) {
        method = null; // makes new fields, without what was typed
        texts = arguments_ ?? chosen.parameters.map(parameter => defaults.textOf(parameter));
        method = chosen;
    }

    function call(typed) {
        form.outcome = plugConsole.call(method.index, typed);
        if ("error" in form.outcome)
            return;
        const line = entry => entry.method.index + JSON.stringify(entry.texts);
        const entry = { method: method, texts: typed };
        history = [entry].concat(history.filter(other => line(other) !== line(entry)));
    }

    PluginConsole {
        id: plugConsole
        plugin: tab.plugin
    }
    ConsoleDefaults {
        id: defaults
        workbench: tab.workbench
    }

    ConsoleMethods {
        methods: plugConsole.methods
        onChosen: method => {
            tab.choose(method);
            form.focusFirst();
        }
        SplitView.preferredWidth: 220
        SplitView.minimumWidth: 120
    }
    ConsoleForm {
        id: form
        method: tab.method
        texts: tab.texts
        onCallWanted: typed => tab.call(typed)
        SplitView.fillWidth: true
        SplitView.minimumWidth: 220
    }
    ConsoleHistory {
        history: tab.history
        onChosen: entry => {
            tab.choose(entry.method, entry.texts);
            form.focusFirst();
        }
        SplitView.preferredWidth: 180
        SplitView.minimumWidth: 100
    }
    ConsoleSignals {
        plugConsole: plugConsole
        SplitView.preferredWidth: 320
        SplitView.minimumWidth: 120
    }
}
