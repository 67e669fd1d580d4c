#include "CsvImport.h"
#include "DemoStations.h"
#include "HostShell.h"
#include "PluginBase.h"
#include "Preparation.h"
#include "Protocol.h"
#include "StationThread.h"

#include <QtCore/QFileInfo>
#include <QtCore/QSettings>
#include <QtCore/QTemporaryDir>
#include <QtQml/QQmlContext>
#include <QtQml/QQmlEngine>
#include <QtQuickControls2/QQuickStyle>
#include <QtQuickTest/quicktest.h>

#include <future>

using namespace stations;
using namespace workbench;
namespace command = protocol::command;
using namespace Qt::StringLiterals;

/// Gives the tests access to the stations and the host.
class Lab : public QObject
{
    Q_OBJECT

public:
    Lab(StationThread &stations, WorkbenchContext &workbench, standin::Framework &framework)
        : m_stations(stations)
        , m_workbench(workbench)
        , m_framework(framework)
    {
    }

    /// Resets faults, permission, saved window state and bookmarks. Each camera gets PerCamera
    /// bookmarks of a quarter of an hour, one every hour back from now. Their texts depend on their
    /// position.
    Q_INVOKABLE void reset()
    {
        QSettings().clear();
        m_framework.rules().reset();
        m_workbench.faults()->reset();
        m_workbench.traffic()->setPaused(false);
        m_workbench.openedRecording()->close();
        m_stations.setSettingPermission(true);
        perform([now = m_workbench.now()](StationNetwork &network) {
            const auto stations = network.stations();
            for (Station *station : stations) {
                station->execute(command::RemoveAllBookmarks, QVariant());
                station->insert(bookmarksOf(station->config(), now));
            }
        });
    }

    /// Returns the server records of a station.
    Q_INVOKABLE QVariantList stored(const QString &relayPath)
    {
        QVariantList records;
        perform([&](StationNetwork &network) {
            const standin::Answer answer =
                network.execute(command::QueryAllBookmarks, QVariantMap(), relayPath);
            records = answer.result.toMap().value(protocol::key::Bookmarks).toList();
        });
        return records;
    }

    Q_INVOKABLE void setSettingPermission(bool allowed)
    {
        m_stations.setSettingPermission(allowed);
    }

    /// Adds bookmarks of a group on the first camera.
    Q_INVOKABLE void fill(int count, const QString &group)
    {
        perform([=, now = m_workbench.now()](StationNetwork &network) {
            const Station *const station = network.stations().constFirst();
            const StationConfig &config = station->config();
            const Bookmark bookmark{{},
                                    config.cameras.constFirst().cameraID,
                                    config.locationID,
                                    now,
                                    now + 1000,
                                    {},
                                    {},
                                    group};
            network.stations().constFirst()->insert(QList<Bookmark>(count, bookmark));
        });
    }

    /// Starts the preparation of other stations, with random bookmarks or an import.
    Q_INVOKABLE QObject *prepare(int bookmarks, int linesOfFile)
    {
        m_preparation.reset();
        m_otherStations.reset();
        m_otherFolder.emplace();
        Preparation::Plan plan{m_otherFolder->filePath(u"data"_s), bookmarks, 1, {}};
        if (linesOfFile > 0) {
            plan.importFile = m_otherFolder->filePath(u"much.csv"_s);
            QFile file(plan.importFile);
            if (!file.open(QIODevice::WriteOnly))
                qFatal("%s can't be written", qPrintable(plan.importFile));
            file.write("camera,start,end\n" + QByteArray("camera-11,1,2\n").repeated(linesOfFile));
        }
        m_otherStations.emplace(demoStations());
        m_preparation.emplace(*m_otherStations, plan);
        m_preparation->start();
        QJSEngine::setObjectOwnership(&*m_preparation, QJSEngine::CppOwnership);
        return &*m_preparation;
    }

    Q_INVOKABLE QString exportFile() const { return m_folder.filePath(u"found.csv"_s); }
    /// Removes all bookmarks and imports a file. Returns their number and the messages.
    Q_INVOKABLE QString importAnew(const QString &file)
    {
        QStringList words;
        perform([&](StationNetwork &network) {
            const auto stations = network.stations();
            for (Station *station : stations)
                station->execute(command::RemoveAllBookmarks, QVariant());
            const CsvImport::Result result = CsvImport(network, {}).run(file);
            words = QStringList(u"%1 imported"_s.arg(result.imported)) + result.messages;
        });
        return words.join(u'\n');
    }

    Q_INVOKABLE QString faultsFile() const { return m_folder.filePath(u"faults.json"_s); }
    Q_INVOKABLE QString sessionFile() const { return m_folder.filePath(u"session.jsonl"_s); }
    /// Copies that session and replaces a text. Returns the path of the copy.
    Q_INVOKABLE QString changedSession(const QString &before, const QString &after) const
    {
        QFile session(sessionFile());
        QFile changed(m_folder.filePath(u"changed.jsonl"_s));
        if (!session.open(QIODevice::ReadOnly) || !changed.open(QIODevice::WriteOnly))
            qFatal("the session can't be copied");
        changed.write(session.readAll().replace(before.toUtf8(), after.toUtf8()));
        return changed.fileName();
    }

private:
    static QList<Bookmark> bookmarksOf(const StationConfig &station, qint64 now)
    {
        constexpr int PerCamera = 30;
        constexpr qint64 Hour = 3'600'000;
        static const QStringList descriptions{u"white van at the gate"_s, u"door left open"_s,
                                              u"delivery"_s};
        QList<Bookmark> bookmarks;
        for (const Camera &camera : station.cameras) {
            for (int i = 0; i < PerCamera; ++i) {
                const qint64 start = now - (i + 1) * Hour;
                bookmarks.append({{},
                                  camera.cameraID,
                                  station.locationID,
                                  start,
                                  start + Hour / 4,
                                  descriptions.at(i % 3),
                                  i % 2 ? u"guard"_s : u"operator"_s,
                                  i % 5 ? QString() : u"night"_s});
            }
        }
        return bookmarks;
    }

    /// Runs a job in the stations' thread and waits for it.
    void perform(const std::function<void(StationNetwork &)> &job)
    {
        std::promise<void> done;
        m_stations.perform([&](StationNetwork &network) {
            job(network);
            done.set_value();
        });
        done.get_future().wait();
    }

    StationThread &m_stations;
    WorkbenchContext &m_workbench;
    standin::Framework &m_framework;
    QTemporaryDir m_folder;
    std::optional<QTemporaryDir> m_otherFolder;
    std::optional<StationThread> m_otherStations;
    std::optional<Preparation> m_preparation;
};

/// Creates stations for each test file, so that no list or fault reaches the next one.
class Setup : public QObject
{
    Q_OBJECT

public Q_SLOTS:
    void applicationAvailable()
    {
        QSettings::setPath(QSettings::NativeFormat, QSettings::UserScope, m_settings.path());
        QCoreApplication::setOrganizationName(u"tessaline"_s);
        QCoreApplication::setApplicationName(u"tst_window"_s);
        QQuickStyle::setStyle(u"Fusion"_s);
    }

    void qmlEngineAvailable(QQmlEngine *engine)
    {
        cleanupTestCase();
        QString error;
        m_data.emplace();
        m_stations.emplace(demoStations());
        m_stations->open(m_data->path(), [](const StationNetwork *network, const QString &problem) {
            if (!network)
                qFatal("%s", qPrintable(problem));
        });
        m_shell.emplace(*m_stations);
        if (!m_shell->load(QStringLiteral(PLUGIN_PATH), &error))
            qFatal("%s", qPrintable(error));
        m_shell->workbench().openedRecording()->setReplayProgram(QStringLiteral(WORKBENCH_PATH),
                                                                 QStringLiteral(PLUGIN_PATH));
        m_shell->initialise(*engine);
        m_lab.emplace(*m_stations, m_shell->workbench(), m_shell->framework());
        m_lab->reset();

        QVariantMap properties = m_shell->initialProperties();
        properties.insert(u"lab"_s, QVariant::fromValue<QObject *>(&*m_lab));
        for (auto it = properties.cbegin(); it != properties.cend(); ++it)
            engine->rootContext()->setContextProperty(it.key(), it.value());
    }

    void cleanupTestCase()
    {
        m_lab.reset();
        m_shell.reset();
        m_stations.reset();
        m_data.reset();
    }

private:
    QTemporaryDir m_settings;
    std::optional<QTemporaryDir> m_data;
    std::optional<StationThread> m_stations;
    std::optional<HostShell> m_shell;
    std::optional<Lab> m_lab;
};

QUICK_TEST_MAIN_WITH_SETUP(window, Setup)
#include "tst_window.moc"
