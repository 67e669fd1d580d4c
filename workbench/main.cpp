#include "Bench.h"
#include "CsvImport.h"
#include "DemoSite.h"
#include "Options.h"
#include "PluginBase.h"
#include "PluginHost.h"
#include "Site.h"
#include "Transcript.h"
#include "framework/Framework.h"
#include "logging/LogControl.h"
#include "topology/Topology.h"

#include <QtCore/QTemporaryDir>
#include <QtGui/QGuiApplication>
#include <QtQml/QQmlApplicationEngine>
#include <QtQml/QQmlContext>
#include <QtQuickControls2/QQuickStyle>

#include <cstdio>

using namespace workbench;

namespace {

constexpr int TourFailed = 1;
constexpr int CannotBegin = 2;

int complain(const QString &error)
{
    std::fprintf(stderr, "tessaline-workbench: %s\n", qPrintable(error));
    return CannotBegin;
}

/// Shows how far an import is, on a line of standard error that is written over and over.
bool showProgress(const CsvImport::Progress &progress)
{
    const int percent =
        progress.totalBytes > 0 ? static_cast<int>(100 * progress.bytes / progress.totalBytes) : 0;
    std::fprintf(stderr, "\rImporting: %lld lines, %d %%", static_cast<long long>(progress.lines),
                 percent);
    return true;
}

/// Returns why the import ended early, or an empty text.
QString import(const QString &file, Site &site)
{
    CsvImport csvImport(site, QDate::currentDate());
    csvImport.setProgressCallback(showProgress);
    const CsvImport::Result result = csvImport.run(file);
    std::fprintf(stderr, "\n");
    for (const QString &message : result.messages)
        std::fprintf(stderr, "%s\n", qPrintable(message));
    if (result.skipped > result.messages.size()) {
        std::fprintf(stderr, "... and %lld more lines\n",
                     static_cast<long long>(result.skipped - result.messages.size()));
    }
    std::fprintf(stderr, "Imported %lld bookmarks, skipped %lld lines.\n",
                 static_cast<long long>(result.imported), static_cast<long long>(result.skipped));
    return result.error;
}

/// Plays the tour to its end; returns the number of checks that failed.
int playTour(PluginBase &plugin, QQmlApplicationEngine &engine, Bench &bench,
             Transcript &transcript)
{
    QObject::connect(&engine, &QQmlApplicationEngine::objectCreationFailed, &bench, [&] {
        transcript.printCheck(false, QStringLiteral("the tour's QML can be loaded"));
        bench.finish();
    });
    QObject::connect(&bench, &Bench::finished, QCoreApplication::instance(),
                     &QCoreApplication::quit, Qt::QueuedConnection);

    engine.setInitialProperties(
        {{QStringLiteral("plugin"), QVariant::fromValue<QObject *>(&plugin)},
         {QStringLiteral("bench"), QVariant::fromValue<QObject *>(&bench)},
         {QStringLiteral("transcript"), QVariant::fromValue<QObject *>(&transcript)}});
    engine.load(QUrl(QStringLiteral("qrc:/tessaline/Workbench/tour/Tour.qml")));
    QCoreApplication::exec();
    transcript.printSummary();
    return transcript.failures();
}

/// Shows the window until it is closed.
int showWindow(PluginBase &plugin, QQmlApplicationEngine &engine, Bench &bench)
{
    QQuickStyle::setStyle(QStringLiteral("Fusion"));
    engine.setInitialProperties(
        {{QStringLiteral("plugin"), QVariant::fromValue<QObject *>(&plugin)},
         {QStringLiteral("bench"), QVariant::fromValue<QObject *>(&bench)}});
    engine.load(QUrl(QStringLiteral("qrc:/tessaline/Workbench/window/Main.qml")));
    return engine.rootObjects().isEmpty() ? CannotBegin : QGuiApplication::exec();
}

int run(const Options &options)
{
    if (!options.logFile.isEmpty() && !standin::logging::writeToFile(options.logFile))
        return complain(options.logFile + QStringLiteral(": cannot be written"));

    const QTemporaryDir temporary;
    const QString folder = options.dataFolder.isEmpty() ? temporary.path() : options.dataFolder;
    QString error;
    const std::unique_ptr<Site> site = Site::open(folder, demoStations(), &error);
    if (!site)
        return complain(error);
    if (!options.importFile.isEmpty()) {
        error = import(options.importFile, *site);
        if (!error.isEmpty())
            return complain(error);
    }

    PluginHost host;
    PluginBase *const plugin = host.load(options.pluginPath, &error);
    if (!plugin)
        return complain(error);

    standin::Topology topology;
    showInTopology(demoStations(), topology);
    standin::Framework framework;
    framework.setServer(site.get());
    framework.addPlugin(standin::Topology::pluginID(), &topology);
    framework.addPlugin(PluginHost::pluginID(), plugin);

    Bench bench(*plugin, framework, *site);
    bench.setServerTimeZone(QStringLiteral("Europe/Berlin"));
    Transcript transcript(stdout, options.verbose);
    framework.setObserver([&](const standin::Traffic &traffic) {
        transcript.printTraffic(traffic);
        bench.noteTraffic(traffic);
    });

    QQmlApplicationEngine engine;
    plugin->InitialPluginBase(engine.rootContext(), nullptr, &framework);
    engine.addImportPath(QStringLiteral("qrc:/tessaline"));
    const bool tour = options.tour || QGuiApplication::platformName() == QLatin1String("offscreen");
    if (!tour)
        return showWindow(*plugin, engine, bench);
    return playTour(*plugin, engine, bench, transcript) == 0 ? 0 : TourFailed;
}

/// Whether there is a screen to show the window on.
bool hasDisplay()
{
#ifdef Q_OS_UNIX
    return qEnvironmentVariableIsSet("DISPLAY") || qEnvironmentVariableIsSet("WAYLAND_DISPLAY");
#else
    return true;
#endif
}

} // namespace

int main(int argc, char *argv[])
{
    if (!hasDisplay())
        qputenv("QT_QPA_PLATFORM", "offscreen");
    QGuiApplication app(argc, argv);
    QCoreApplication::setApplicationName(QStringLiteral("tessaline-workbench"));
    QCoreApplication::setApplicationVersion(QStringLiteral(WORKBENCH_VERSION));
    return run(Options::parse(QCoreApplication::arguments()));
}
