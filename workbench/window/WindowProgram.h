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

/// The workbench with its window: prepares the stations, loads the plug-in and shows what there is
/// to show, from the first progress bar to an error.
class WindowProgram : public QObject
{
    Q_OBJECT

public:
    /// @param comparison that was made before, for the integrators' drawer
    explicit WindowProgram(const Options &options,
                           const std::optional<Comparison> &comparison = std::nullopt);

    /// Returns the exit code, when the window has been closed.
    int run();

private:
    void showPreparation();
    void goOn();
    void showMain();
    void fail(const QString &error, const QString &details = {});
    QQuickWindow *show(const QString &file, const QVariantMap &properties);

    Options m_options;
    std::optional<Comparison> m_comparison;
    StationThread m_stations;
    Preparation m_preparation;
    ProgressLine m_progressLine;
    HostShell m_shell;
    QQmlApplicationEngine m_engine;
    QQuickWindow *m_preparationWindow = nullptr; ///< owned by the engine, as all windows
    int m_exitCode = 0;
};

} // namespace workbench
