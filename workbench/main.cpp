#include "CsvImport.h"
#include "DemoSite.h"
#include "Installation.h"
#include "Options.h"
#include "Site.h"
#include "Transcript.h"
#include "logging/LogControl.h"

#include <QtCore/QTemporaryDir>
#include <QtGui/QGuiApplication>
#include <QtQml/QQmlApplicationEngine>
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
int playTour(Installation &installation, QQmlApplicationEngine &engine, Transcript &transcript)
{
    Bench &bench = installation.bench();
    QObject::connect(&engine, &QQmlApplicationEngine::objectCreationFailed, &bench, [&] {
        transcript.printCheck(false, QStringLiteral("the tour's QML can be loaded"));
        bench.finish();
    });
    QObject::connect(&bench, &Bench::finished, QCoreApplication::instance(),
                     &QCoreApplication::quit, Qt::QueuedConnection);

    QVariantMap properties = installation.initialProperties();
    properties.insert(QStringLiteral("transcript"), QVariant::fromValue<QObject *>(&transcript));
    engine.setInitialProperties(properties);
    engine.load(QUrl(QStringLiteral("qrc:/tessaline/Workbench/tour/Tour.qml")));
    QCoreApplication::exec();
    transcript.printSummary();
    return transcript.failures();
}

/// Shows the window until it is closed.
int showWindow(Installation &installation, QQmlApplicationEngine &engine)
{
    QQuickStyle::setStyle(QStringLiteral("Fusion"));
    engine.setInitialProperties(installation.initialProperties());
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

    Installation installation(*site);
    if (!installation.load(options.pluginPath, &error))
        return complain(error);
    Transcript transcript(stdout, options.verbose);
    QObject::connect(&installation.bench(), &Bench::passing, &transcript,
                     &Transcript::printTraffic);

    QQmlApplicationEngine engine;
    installation.enter(engine);
    const bool tour = options.tour || QGuiApplication::platformName() == QLatin1String("offscreen");
    if (!tour)
        return showWindow(installation, engine);
    return playTour(installation, engine, transcript) == 0 ? 0 : TourFailed;
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
    QCoreApplication::setOrganizationName(QStringLiteral("Tessaline"));
    QCoreApplication::setApplicationName(QStringLiteral("tessaline-workbench"));
    QCoreApplication::setApplicationVersion(QStringLiteral(WORKBENCH_VERSION));
    return run(Options::parse(QCoreApplication::arguments()));
}
