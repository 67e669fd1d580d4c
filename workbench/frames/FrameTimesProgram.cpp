#include "FrameTimesProgram.h"

#include "DemoStations.h"
#include "ExitCode.h"
#include "FrameReport.h"
#include "HostShell.h"
#include "PrepareStations.h"
#include "Scenario.h"
#include "StationThread.h"

#include <QtCore/QDir>
#include <QtCore/QTemporaryDir>
#include <QtGui/QGuiApplication>
#include <QtQml/QQmlApplicationEngine>
#include <QtQuick/QQuickWindow>
#include <QtQuickControls2/QQuickStyle>

namespace workbench {

namespace {

constexpr QSize WindowSize(1600, 900);

QQuickWindow *openWindow(QQmlApplicationEngine &engine, HostShell &shell)
{
    QQuickStyle::setStyle(QStringLiteral("Fusion"));
    shell.initialise(engine);
    QVariantMap properties = shell.initialProperties();
    properties.insert(QStringLiteral("remembers"), false);
    properties.insert(QStringLiteral("width"), WindowSize.width());
    properties.insert(QStringLiteral("height"), WindowSize.height());
    engine.setInitialProperties(properties);
    engine.load(QUrl(QStringLiteral("qrc:/tessaline/Workbench/Main.qml")));
    auto *const window = qobject_cast<QQuickWindow *>(engine.rootObjects().value(0));
    if (window) {
        window->requestActivate(); // only the active window gets keys
        QMetaObject::invokeMethod(window->findChild<QObject *>(QStringLiteral("cellGrid")),
                                  "showFirstCameras");
    }
    return window;
}

QJsonObject describe(const Options &options, const QQuickWindow &window)
{
    return {{QStringLiteral("bookmarks"), options.bookmarks},
            {QStringLiteral("stations"), options.stations},
            {QStringLiteral("cameras"), options.cameras},
            {QStringLiteral("rounds"), options.rounds},
            {QStringLiteral("platform"), QGuiApplication::platformName()},
            {QStringLiteral("backend"), QQuickWindow::sceneGraphBackend()},
            {QStringLiteral("width"), window.width()},
            {QStringLiteral("height"), window.height()}};
}

} // namespace

int measureFrameTimes(const Options &options)
{
    const QTemporaryDir temporary;
    const QString folder = options.dataFolder.isEmpty() ? temporary.path() : options.dataFolder;
    stations::StationThread stations(demoStations(options.stations, options.cameras));
    QString error =
        prepareStations(stations, {folder, options.bookmarks, options.seed, options.importFile});
    HostShell shell(stations);
    if (!error.isEmpty() || !shell.load(options.pluginPath, &error))
        return reportError(error);

    QQmlApplicationEngine engine;
    QQuickWindow *const window = openWindow(engine, shell);
    if (!window)
        return reportError(
            QStringLiteral("the window's QML can't be loaded; see the messages above"));
    FrameReport report;
    Scenario scenario(*window, shell.workbench(), shell.framework());
    for (int round = 0; round < options.rounds; ++round)
        scenario.perform(report);
    std::printf("%s", qPrintable(report.tables()));

    const QString file = options.picturesFolder + QStringLiteral("/frame-times.json");
    if (!options.picturesFolder.isEmpty() &&
        !(QDir().mkpath(options.picturesFolder) && report.write(file, describe(options, *window))))
        return reportError(
            file + QStringLiteral(": can't be written; check the folder and its permissions"));
    return exitcode::Done;
}

} // namespace workbench
