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

/// Before Qt reads the arguments, as it chooses the platform first.
bool wantsNoDisplay(const char *const *begin, const char *const *end)
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
            complain(QStringLiteral("cannot open a window on the display \"%1\". Check DISPLAY, "
                                    "or run with --headless.")
                         .arg(qEnvironmentVariable("DISPLAY"))));
    std::fprintf(stderr, "%s\n", qPrintable(qFormatLogMessage(type, context, text)));
}

/// Whether there is a screen to show the window on.
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
        return complain(options.logFile + QStringLiteral(": cannot be written"));
    const bool seen = QGuiApplication::platformName() != QLatin1String("offscreen");
    if (options.frameTimes)
        return measureFrameTimes(options);
    if (!options.qmlFile.isEmpty())
        return OwnQmlProgram(options).run();
    std::optional<Comparison> comparison;
    if (!options.replayFile.isEmpty()) {
        comparison = compareAsAsked(options);
        if (!seen || !comparison->error.isEmpty())
            return comparison->exitCode();
    }
    if (options.tour || (!seen && options.screenshotFile.isEmpty()))
        return playTour(options);
    if (options.dataFolder.isEmpty())
        options.dataFolder = options.ownDataFolder();
    const int code = WindowProgram(options, comparison).run();
    return code || !comparison ? code : comparison->exitCode();
}

} // namespace

int main(int argc, char *argv[])
{
    if (wantsNoDisplay(argv, argv + argc) ||
        (!hasDisplay() && !qEnvironmentVariableIsSet("QT_QPA_PLATFORM")))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    // How long a window waits for more input before it draws a frame: 5 ms are nearly as much as
    // drawing it takes.
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
