#include "ExitCode.h"
#include "FrameTimesProgram.h"
#include "Options.h"
#include "OwnQmlProgram.h"
#include "ReplayProgram.h"
#include "TourProgram.h"
#include "WindowProgram.h"
#include "logging/LogControl.h"

#include <QtGui/QGuiApplication>

#include <algorithm>
#include <cstdlib>
#include <optional>

using namespace workbench;

namespace {

/// Searches for --headless before Qt parses the arguments, because the platform is chosen first.
bool isHeadless(const char *const *begin, const char *const *end)
{
    return std::any_of(begin, end, [](const char *argument) {
        return QLatin1String(argument) == QLatin1String("--headless");
    });
}

/// Message handler until the application exists. Qt aborts the process if it cannot open the
/// display.
void endWithoutDisplay(QtMsgType type, const QMessageLogContext &context, const QString &text)
{
    if (type == QtFatalMsg)
        std::_Exit(
            reportError(QStringLiteral("cannot open a window on the display \"%1\". Check DISPLAY, "
                                       "or run with --headless.")
                            .arg(qEnvironmentVariable("DISPLAY"))));
    std::fprintf(stderr, "%s\n", qPrintable(qFormatLogMessage(type, context, text)));
}

/// @return true if a window can be shown on a screen
bool hasDisplay()
{
#ifdef Q_OS_UNIX
    return !qEnvironmentVariableIsEmpty("DISPLAY") ||
           !qEnvironmentVariableIsEmpty("WAYLAND_DISPLAY");
#else
    return true;
#endif
}

int run(Options options)
{
    if (!options.logFile.isEmpty() && !standin::logging::writeToFile(options.logFile))
        return reportError(
            options.logFile +
            QStringLiteral(": can't be written; check the folder and its permissions"));
    const bool visible = QGuiApplication::platformName() != QLatin1String("offscreen");
    if (options.frameTimes)
        return measureFrameTimes(options);
    if (!options.qmlFile.isEmpty())
        return OwnQmlProgram(options).run();
    std::optional<Comparison> comparison;
    if (!options.replayFile.isEmpty()) {
        comparison = compareByOptions(options);
        if (!visible || !comparison->error.isEmpty())
            return comparison->exitCode();
    }
    if (options.tour || (!visible && options.screenshotFile.isEmpty()))
        return playTour(options);
    if (options.dataFolder.isEmpty())
        options.dataFolder = options.ownDataFolder();
    const int code = WindowProgram(options, comparison).run();
    return code || !comparison ? code : comparison->exitCode();
}

} // namespace

int main(int argc, char *argv[])
{
    if (isHeadless(argv, argv + argc) ||
        (!hasDisplay() && !qEnvironmentVariableIsSet("QT_QPA_PLATFORM")))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    // By default a window waits 5 ms for more input before it draws, nearly as long as drawing
    // takes.
    if (!qEnvironmentVariableIsSet("QT_QPA_UPDATE_IDLE_TIME"))
        qputenv("QT_QPA_UPDATE_IDLE_TIME", "1");
    qInstallMessageHandler(endWithoutDisplay);
    const QGuiApplication app(argc, argv);
    qInstallMessageHandler(nullptr);
    QCoreApplication::setOrganizationName(QStringLiteral("Tessaline"));
    QCoreApplication::setApplicationName(QStringLiteral("tessaline-workbench"));
    QCoreApplication::setApplicationVersion(QStringLiteral(WORKBENCH_VERSION));
    return run(Options::parse(QCoreApplication::arguments()));
}
