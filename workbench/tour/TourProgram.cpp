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
    shell.initialise(engine);
    WorkbenchContext &workbench = shell.workbench();
    QObject::connect(&workbench, &WorkbenchContext::passing, &transcript,
                     &Transcript::printTraffic);
    QObject::connect(&engine, &QQmlApplicationEngine::objectCreationFailed, &workbench, [&] {
        transcript.printCheck(false, QStringLiteral("the tour's QML can be loaded"));
        workbench.finish();
    });
    QObject::connect(&workbench, &WorkbenchContext::finished, QCoreApplication::instance(),
                     &QCoreApplication::quit, Qt::QueuedConnection);

    QVariantMap properties = shell.initialProperties();
    properties.insert(QStringLiteral("transcript"), QVariant::fromValue<QObject *>(&transcript));
    engine.setInitialProperties(properties);
    engine.load(QUrl(QStringLiteral("qrc:/tessaline/Tour/Tour.qml")));
    QCoreApplication::exec();
}

/// Takes pictures of the window's main states, with temporary stations and random bookmarks.
void takePictures(const Options &options, Transcript &transcript)
{
    constexpr int Bookmarks = 5'000;
    const QTemporaryDir folder;
    stations::StationThread stations(demoStations());
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
    shell.initialise(engine);
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
        return reportError(
            options.picturesFolder +
            QStringLiteral(": can't be written; check the folder and its permissions"));
    Transcript transcript(stdout, options.verbose);
    {
        // In a block, because the pictures load the plug-in again: it can't be loaded twice at a
        // time.
        const QTemporaryDir temporary;
        const QString folder = options.dataFolder.isEmpty() ? temporary.path() : options.dataFolder;
        stations::StationThread stations(demoStations());
        QString error = prepareStations(stations, {folder, 0, 0, options.importFile});
        HostShell shell(stations);
        if (!error.isEmpty() || !shell.load(options.pluginPath, &error))
            return reportError(error);
        play(shell, transcript);
    }
    if (!options.picturesFolder.isEmpty())
        takePictures(options, transcript);
    transcript.printSummary();
    return transcript.failures() == 0 ? exitcode::Done : exitcode::CheckFailed;
}

} // namespace workbench
