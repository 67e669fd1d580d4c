#include "WindowProgram.h"

#include "DemoStations.h"
#include "ExitCode.h"
#include "Screenshot.h"

#include <QtGui/QGuiApplication>
#include <QtQuick/QQuickWindow>
#include <QtQuickControls2/QQuickStyle>

namespace workbench {

WindowProgram::WindowProgram(const Options &options, const std::optional<Comparison> &comparison)
    : m_options(options)
    , m_comparison(comparison)
    , m_stations(demoStations(options.stations, options.cameras))
    , m_preparation(m_stations,
                    {options.dataFolder, options.bookmarks, options.seed, options.importFile})
    , m_progressLine(m_preparation)
    , m_shell(m_stations)
{
}

int WindowProgram::run()
{
    QQuickStyle::setStyle(QStringLiteral("Fusion"));
    m_engine.addImportPath(HostShell::importPath());
    connect(&m_preparation, &Preparation::finished, this, &WindowProgram::continueAfterPreparation);
    connect(&m_preparation, &Preparation::acknowledged, this, &WindowProgram::showMain);
    // Before the preparation, which may take long: a defect of the plug-in should be reported at
    // once.
    QString error;
    if (m_shell.load(m_options.pluginPath, &error) && !m_options.faultsFile.isEmpty())
        error = m_shell.workbench().faults()->load(m_options.faultsFile);
    if (error.isEmpty())
        showPreparation();
    else
        fail(error);
    const int code = QGuiApplication::exec();
    return m_exitCode ? m_exitCode : code;
}

void WindowProgram::showPreparation()
{
    m_preparation.start();
    if (m_options.screenshotFile.isEmpty()) {
        m_preparationWindow =
            show(QStringLiteral("Preparation/PreparationWindow.qml"),
                 {{QStringLiteral("preparation"), QVariant::fromValue(&m_preparation)}});
    }
}

void WindowProgram::continueAfterPreparation()
{
    if (m_exitCode)
        return;
    if (!m_preparation.outcome().error.isEmpty())
        fail(m_preparation.outcome().error, m_preparation.report());
    else if (m_preparation.report().isEmpty() || !m_preparationWindow)
        showMain();
}

void WindowProgram::showMain()
{
    m_shell.initialise(m_engine);
    if (m_comparison)
        m_shell.workbench().openedRecording()->open(*m_comparison);
    QQuickWindow *const window =
        show(QStringLiteral("Workbench/Main.qml"), m_shell.initialProperties());
    if (m_preparationWindow)
        m_preparationWindow->deleteLater();
    if (!window)
        fail(QStringLiteral("the window's QML can't be loaded; see the messages above"));
    if (!window || m_options.screenshotFile.isEmpty())
        return;
    auto *const screenshot =
        new Screenshot(*window, m_shell.workbench(), m_options.screenshotFile, this);
    connect(screenshot, &Screenshot::done, this, [this](const QString &error) {
        if (!error.isEmpty())
            m_exitCode = reportError(error);
        QCoreApplication::exit(m_exitCode);
    });
}

/// Reports an error on standard error and, on a screen, in a window.
/// @param details messages for the window, already printed on standard error
void WindowProgram::fail(const QString &error, const QString &details)
{
    m_exitCode = reportError(error);
    if (m_preparationWindow)
        m_preparationWindow->deleteLater();
    const bool hasScreen = QGuiApplication::platformName() != QLatin1String("offscreen");
    const bool shown =
        hasScreen &&
        show(QStringLiteral("Preparation/ErrorWindow.qml"),
             {{QStringLiteral("message"), QString(details + QLatin1Char('\n') + error).trimmed()}});
    // Queued, because quit() has no effect before the event loop runs.
    if (!shown)
        QMetaObject::invokeMethod(qApp, &QCoreApplication::quit, Qt::QueuedConnection);
}

/// @return the window, or null if the file can't be loaded; Qt has printed the reasons then
QQuickWindow *WindowProgram::show(const QString &file, const QVariantMap &properties)
{
    const qsizetype before = m_engine.rootObjects().size();
    m_engine.setInitialProperties(properties);
    m_engine.load(QUrl(QStringLiteral("qrc:/tessaline/") + file));
    const QList<QObject *> roots = m_engine.rootObjects();
    return roots.size() > before ? qobject_cast<QQuickWindow *>(roots.last()) : nullptr;
}

} // namespace workbench
