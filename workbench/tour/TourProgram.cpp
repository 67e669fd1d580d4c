#include "TourProgram.h"

#include "DemoStations.h"
#include "ExitCode.h"
#include "HostShell.h"
#include "PictureTaker.h"
#include "PrepareStations.h"
#include "StationThread.h"
#include "Transcript.h"

#include <QtCore/QCoreApplication>
#include <QtCore/QDir>
#include <QtCore/QEventLoop>
#include <QtCore/QTemporaryDir>
#include <QtQml/QQmlApplicationEngine>
#include <QtQuickControls2/QQuickStyle>

namespace workbench {

namespace {

void play(HostShell &shell, Transcript &transcript)
{
    QQmlApplicationEngine engine;
    shell.enter(engine);
    WorkbenchContext &bench = shell.bench();
    QObject::connect(&bench, &WorkbenchContext::passing, &transcript, &Transcript::printTraffic);
    QObject::connect(&engine, &QQmlApplicationEngine::objectCreationFailed, &bench, [&] {
        transcript.printCheck(false, QStringLiteral("the tour's QML can be loaded"));
        bench.finish();
    });
    QObject::connect(&bench, &WorkbenchContext::finished, QCoreApplication::instance(),
                     &QCoreApplication::quit, Qt::QueuedConnection);

    QVariantMap properties = shell.initialProperties();
    properties.insert(QStringLiteral("transcript"), QVariant::fromValue<QObject *>(&transcript));
    engine.setInitialProperties(properties);
    engine.load(QUrl(QStringLiteral("qrc:/tessaline/Tour/Tour.qml")));
    QCoreApplication::exec();
}

/// Pictures of the window in its main states, with stations of its own and bookmarks in them.
void takePictures(const Options &options, Transcript &transcript)
{
    constexpr int Bookmarks = 5'000;
    const QTemporaryDir folder;
    StationThread stations(demoStations());
    QString error = prepareStations(stations, {folder.path(), Bookmarks, options.seed, QString()});
    HostShell shell(stations);
    if (!error.isEmpty() || !shell.load(options.pluginPath, &error)) {
        transcript.printCheck(false, error);
        return;
    }
    transcript.printStep(QStringLiteral("The window in its main states"));
    PictureTaker pictures(options.picturesFolder, transcript);
    QEventLoop loop;
    QObject::connect(&pictures, &PictureTaker::finished, &loop, &QEventLoop::quit,
                     Qt::QueuedConnection);

    QQuickStyle::setStyle(QStringLiteral("Fusion"));
    QQmlApplicationEngine engine;
    shell.enter(engine);
    QVariantMap properties = shell.initialProperties();
    properties.insert(QStringLiteral("pictures"), QVariant::fromValue(&pictures));
    engine.setInitialProperties(properties);
    engine.load(QUrl(QStringLiteral("qrc:/tessaline/Tour/PictureTour.qml")));
    if (engine.rootObjects().isEmpty())
        transcript.printCheck(false, QStringLiteral("the window's QML can be loaded"));
    else
        loop.exec();
}

} // namespace

int playTour(const Options &options)
{
    if (!options.picturesFolder.isEmpty() && !QDir().mkpath(options.picturesFolder))
        return complain(options.picturesFolder + QStringLiteral(": cannot be written"));
    Transcript transcript(stdout, options.verbose);
    {
        // Over before the pictures, as a plug-in is loaded once at a time.
        const QTemporaryDir temporary;
        const QString folder = options.dataFolder.isEmpty() ? temporary.path() : options.dataFolder;
        StationThread stations(demoStations());
        QString error = prepareStations(stations, {folder, 0, 0, options.importFile});
        HostShell shell(stations);
        if (!error.isEmpty() || !shell.load(options.pluginPath, &error))
            return complain(error);
        play(shell, transcript);
    }
    if (!options.picturesFolder.isEmpty())
        takePictures(options, transcript);
    transcript.printSummary();
    return transcript.failures() == 0 ? exitcode::Done : exitcode::CheckFailed;
}

} // namespace workbench
