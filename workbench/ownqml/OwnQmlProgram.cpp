#include "OwnQmlProgram.h"

#include "DemoStations.h"
#include "ExitCode.h"
#include "PluginBase.h"
#include "PrepareStations.h"

#include <QtCore/QDir>
#include <QtCore/QEventLoop>
#include <QtCore/QTimer>
#include <QtGui/QGuiApplication>
#include <QtQuickControls2/QQuickStyle>

namespace workbench {

namespace {

constexpr double DefaultLimit = 60; // seconds, without a window that a user could close
constexpr double MaxLimit = 1e6;    // seconds; the timer takes milliseconds as int

} // namespace

OwnQmlProgram::OwnQmlProgram(const Options &options)
    : m_options(options)
    , m_visible(QGuiApplication::platformName() != QLatin1String("offscreen"))
    , m_stations(demoStations(options.stations, options.cameras))
    , m_shell(m_stations)
{
}

int OwnQmlProgram::run()
{
    QQuickStyle::setStyle(QStringLiteral("Fusion"));
    const QString error = prepare();
    if (!error.isEmpty())
        return reportError(error);
    m_ownQml.emplace(
        m_options.qmlFile, QStringList{HostShell::importPath()},
        QVariantMap{{QStringLiteral("bookmarks"), QVariant::fromValue(&m_shell.recordedPlugin())},
                    {QStringLiteral("topology"),
                     QVariantMap{{QStringLiteral("stations"), m_shell.workbench().stations()}}}});
    connect(&*m_ownQml, &OwnQml::exitRequested, this, &OwnQmlProgram::finish);
    connectClient();
    // After the connection: its answers must not be lost, or the file would never be loaded.
    if (!m_options.faultsFile.isEmpty()) {
        const QString problem = m_shell.workbench().faults()->load(m_options.faultsFile);
        if (!problem.isEmpty())
            return reportError(problem);
    }
    if (!showWindows())
        return exitcode::CannotStart;
    if (m_limit >= 0)
        QTimer::singleShot(int(m_limit * 1000), this, [this] { finish(exitcode::TimedOut); });
    // From the event loop, because the file may end it at once.
    QTimer::singleShot(0, this, [this] {
        if (!m_ownQml->load() && m_limit >= 0)
            finish(exitcode::CannotStart);
    });
    const int code = QGuiApplication::exec();
    if (code == exitcode::TimedOut)
        std::fprintf(stderr, "tessaline-workbench: %s did not end within %g s\n",
                     qPrintable(m_options.qmlFile), m_limit);
    return code == exitcode::Done && !m_ownQml->errors().isEmpty() ? exitcode::CheckFailed : code;
}

/// Prepares the stations and loads the plug-in.
/// @return an error message, or an empty text
QString OwnQmlProgram::prepare()
{
    QString folder = m_options.dataFolder;
    if (folder.isEmpty())
        folder = m_visible ? m_options.ownDataFolder() : m_temporary.path();
    QString error = prepareStations(
        m_stations, {folder, m_options.bookmarks, m_options.seed, m_options.importFile});
    if (error.isEmpty() && m_shell.load(m_options.pluginPath, &error))
        error = readCondition();
    return error;
}

QString OwnQmlProgram::readCondition()
{
    if (m_options.until.isEmpty()) {
        m_limit = m_visible ? -1 : DefaultLimit;
        return {};
    }
    bool isNumber = false;
    m_limit = m_options.until.toDouble(&isNumber);
    if (isNumber && m_limit >= 0 && m_limit <= MaxLimit)
        return {};
    const QStringList names = m_shell.workbench().signalNames();
    if (!names.contains(m_options.until))
        return QStringLiteral(
                   "--until %1: expected seconds, at most 1000000, or one of the signals %2")
            .arg(m_options.until, names.join(QLatin1String(", ")));
    m_signal = m_options.until;
    m_limit = DefaultLimit;
    return {};
}

/// Connects the plug-in to the server and waits for the answers, so that the file finds a connected
/// client.
void OwnQmlProgram::connectClient()
{
    WorkbenchContext &workbench = m_shell.workbench();
    m_shell.initialise(m_engine);
    workbench.connectToServer();
    QEventLoop answers;
    connect(&workbench, &WorkbenchContext::trafficPassed, &answers, [&] {
        if (workbench.outstanding() == 0)
            answers.quit();
    });
    if (workbench.outstanding() > 0) // another build may send nothing
        answers.exec();
    // Queued, because a handler in the file may end the program with another code.
    m_receiver.emplace(&m_shell.plugin(), [this](const QMetaMethod &signal, const auto &) {
        if (!m_signal.isEmpty() && QLatin1String(signal.name()) == m_signal)
            QMetaObject::invokeMethod(
                this, [this] { finish(exitcode::Done); }, Qt::QueuedConnection);
    });
}

/// Opens the file's window and, on a screen, the integrators' drawer.
/// @return false if a window can't be opened
bool OwnQmlProgram::showWindows()
{
    m_engine.setInitialProperties({{QStringLiteral("own"), QVariant::fromValue(&*m_ownQml)}});
    m_engine.load(QUrl(QStringLiteral("qrc:/tessaline/OwnQml/OwnQmlWindow.qml")));
    if (m_visible) {
        m_engine.setInitialProperties(m_shell.initialProperties());
        m_engine.load(QUrl(QStringLiteral("qrc:/tessaline/OwnQml/DrawerWindow.qml")));
    }
    return m_engine.rootObjects().size() == (m_visible ? 2 : 1);
}

/// Ends the program. Later calls are ignored, so that the first code counts.
void OwnQmlProgram::finish(int code)
{
    if (!m_finished)
        QCoreApplication::exit(code);
    m_finished = true;
}

} // namespace workbench
