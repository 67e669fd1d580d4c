#pragma once

#include "Comparison.h"
#include "HostShell.h"
#include "Options.h"
#include "Preparation.h"
#include "ProgressLine.h"
#include "StationThread.h"

#include <QtQml/QQmlApplicationEngine>

#include <optional>

class QQuickWindow;

namespace workbench {

/// Runs the workbench with its window: loads the plug-in, prepares the stations and shows progress,
/// errors and the main window.
class WindowProgram : public QObject
{
    Q_OBJECT

public:
    /// @param comparison a finished comparison, for the integrators' drawer
    explicit WindowProgram(const Options &options,
                           const std::optional<Comparison> &comparison = std::nullopt);

    /// Runs until the window is closed.
    /// @return the exit code
    int run();

private:
    void showPreparation();
    void continueAfterPreparation();
    void showMain();
    void fail(const QString &error, const QString &details = {});
    QQuickWindow *show(const QString &file, const QVariantMap &properties);

    Options m_options;
    std::optional<Comparison> m_comparison;
    stations::StationThread m_stations;
    Preparation m_preparation;
    ProgressLine m_progressLine;
    HostShell m_shell;
    QQmlApplicationEngine m_engine;
    QQuickWindow *m_preparationWindow = nullptr; ///< owned by the engine
    int m_exitCode = 0;
};

} // namespace workbench
