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

constexpr double DefaultLimit = 60; // seconds, where nobody could close the window

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
        return complain(error);
    m_ownQml.emplace(
        m_options.qmlFile, QStringList{HostShell::importPath()},
        QVariantMap{{QStringLiteral("bookmarks"), QVariant::fromValue(&m_shell.recordedPlugin())},
                    {QStringLiteral("topology"),
                     QVariantMap{{QStringLiteral("stations"), m_shell.bench().stations()}}}});
    connect(&*m_ownQml, &OwnQml::exitRequested, this, &OwnQmlProgram::finish);
    connectClient();
    // Afterwards, as an answer to the connection that is lost would keep the file from loading.
    if (!m_options.faultsFile.isEmpty()) {
        const QString problem = m_shell.bench().faults()->load(m_options.faultsFile);
        if (!problem.isEmpty())
            return complain(problem);
    }
    if (!showWindows())
        return exitcode::CannotBegin;
    if (m_limit >= 0)
        QTimer::singleShot(int(m_limit * 1000), this, [this] { finish(exitcode::TimedOut); });
    // Once the event loop runs, which the file may end at once.
    QTimer::singleShot(0, this, [this] {
        if (!m_ownQml->load() && m_limit >= 0)
            finish(exitcode::CannotBegin);
    });
    const int code = QGuiApplication::exec();
    if (code == exitcode::TimedOut)
        std::fprintf(stderr, "tessaline-workbench: %s has not ended within %g s\n",
                     qPrintable(m_options.qmlFile), m_limit);
    return code == exitcode::Done && !m_ownQml->errors().isEmpty() ? exitcode::CheckFailed : code;
}

/// @return what keeps the program from beginning, or an empty text
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
    if (isNumber && m_limit >= 0)
        return {};
    const QStringList names = m_shell.bench().signalNames();
    if (!names.contains(m_options.until))
        return QStringLiteral("--until %1: expected seconds or one of the signals %2")
            .arg(m_options.until, names.join(QLatin1String(", ")));
    m_signal = m_options.until;
    m_limit = DefaultLimit;
    return {};
}

/// The file finds a client that has been connected for a while.
void OwnQmlProgram::connectClient()
{
    WorkbenchContext &bench = m_shell.bench();
    m_shell.enter(m_engine);
    bench.connectToServer();
    QEventLoop answers;
    connect(&bench, &WorkbenchContext::trafficPassed, &answers, [&] {
        if (bench.outstanding() == 0)
            answers.quit();
    });
    answers.exec();
    // After the file's own handlers, which may end the program with a code of theirs.
    m_receiver.emplace(&m_shell.plugin(), [this](const QMetaMethod &signal, const auto &) {
        if (!m_signal.isEmpty() && QLatin1String(signal.name()) == m_signal)
            QMetaObject::invokeMethod(
                this, [this] { finish(exitcode::Done); }, Qt::QueuedConnection);
    });
}

/// The window of the file, and where somebody can see it the integrators' drawer.
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

/// The first code counts.
void OwnQmlProgram::finish(int code)
{
    if (!m_finished)
        QCoreApplication::exit(code);
    m_finished = true;
}

} // namespace workbench
