#pragma once

#include "HostShell.h"
#include "Options.h"
#include "OwnQml.h"
#include "SignalReceiver.h"
#include "StationThread.h"

#include <QtCore/QTemporaryDir>
#include <QtQml/QQmlApplicationEngine>

#include <optional>

namespace workbench {

/// Runs a developer's QML file in place of the client's part of the window.
class OwnQmlProgram : public QObject
{
    Q_OBJECT

public:
    explicit OwnQmlProgram(const Options &options);

    /// Runs until the file ends the program, the signal of --until comes or the time is over.
    /// @return the exit code
    int run();

private:
    QString prepare();
    QString readCondition();
    void connectClient();
    bool showWindows();
    void finish(int code);

    Options m_options;
    bool m_visible; ///< windows appear on a screen
    QTemporaryDir m_temporary;
    stations::StationThread m_stations;
    HostShell m_shell;
    std::optional<OwnQml> m_ownQml;
    QQmlApplicationEngine m_engine; ///< of the workbench's own windows
    std::optional<standin::SignalReceiver> m_receiver;
    QString m_signal;    ///< the signal that ends the program; empty: none
    double m_limit = -1; ///< seconds; negative: none
    bool m_finished = false;
};

} // namespace workbench
