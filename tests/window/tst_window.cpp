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

using namespace workbench;
namespace command = protocol::command;
using namespace Qt::StringLiterals;

/// What the tests see and do behind the window's back.
class Lab : public QObject
{
    Q_OBJECT

public:
    Lab(StationThread &stations, WorkbenchContext &bench, standin::Framework &framework)
        : m_stations(stations)
        , m_bench(bench)
        , m_framework(framework)
    {
    }

    /// Everything as it was at the start: faults gone, settings allowed, the last window forgotten,
    /// and on each camera PerCamera bookmarks, one every hour back from now, a quarter of an hour
    /// long. Description, creator and group follow from their position.
    Q_INVOKABLE void reset()
    {
        QSettings().clear();
        m_framework.rules().reset();
        m_bench.faults()->reset();
        m_bench.traffic()->setPaused(false);
        m_bench.openedRecording()->close();
        m_stations.setSettingPermission(true);
        perform([now = m_bench.now()](Site &site) {
            const auto stations = site.stations();
            for (Station *station : stations) {
                station->execute(command::RemoveAllBookmarks, QVariant());
                station->insert(bookmarksOf(station->config(), now));
            }
        });
    }

    /// The bookmarks that a station keeps, as the server hands them out.
    Q_INVOKABLE QVariantList stored(const QString &relayPath)
    {
        QVariantList records;
        perform([&](Site &site) {
            const standin::Answer answer =
                site.execute(command::QueryAllBookmarks, QVariantMap(), relayPath);
            records = answer.result.toMap().value(protocol::key::Bookmarks).toList();
        });
        return records;
    }

    Q_INVOKABLE void setSettingPermission(bool allowed)
    {
        m_stations.setSettingPermission(allowed);
    }

    /// More bookmarks on the first station's first camera, in its list of groups as named.
    Q_INVOKABLE void fill(int count, const QString &group)
    {
        perform([=, now = m_bench.now()](Site &site) {
            const Station *const station = site.stations().constFirst();
            const StationConfig &config = station->config();
            const Bookmark bookmark{{},
                                    config.cameras.constFirst().cameraID,
                                    config.locationID,
                                    now,
                                    now + 1000,
                                    {},
                                    {},
                                    group};
            site.stations().constFirst()->insert(QList<Bookmark>(count, bookmark));
        });
    }

    /// Begins to prepare another installation: with bookmarks that are made up, or from a file.
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
    /// Removes all bookmarks and imports a file; returns how many, and what was wrong with it.
    Q_INVOKABLE QString importAnew(const QString &file)
    {
        QStringList words;
        perform([&](Site &site) {
            const auto stations = site.stations();
            for (Station *station : stations)
                station->execute(command::RemoveAllBookmarks, QVariant());
            const CsvImport::Result result = CsvImport(site, {}).run(file);
            words = QStringList(u"%1 imported"_s.arg(result.imported)) + result.messages;
        });
        return words.join(u'\n');
    }

    Q_INVOKABLE QString faultsFile() const { return m_folder.filePath(u"faults.json"_s); }
    Q_INVOKABLE QString sessionFile() const { return m_folder.filePath(u"session.jsonl"_s); }
    /// A copy of that session with one text instead of another.
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

    /// Waits until the stations have done it.
    void perform(const std::function<void(Site &)> &job)
    {
        std::promise<void> done;
        m_stations.perform([&](Site &site) {
            job(site);
            done.set_value();
        });
        done.get_future().wait();
    }

    StationThread &m_stations;
    WorkbenchContext &m_bench;
    standin::Framework &m_framework;
    QTemporaryDir m_folder;
    std::optional<QTemporaryDir> m_otherFolder;
    std::optional<StationThread> m_otherStations;
    std::optional<Preparation> m_preparation;
};

/// Gives each test file an installation of its own: no list or fault of one reaches the next.
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
        m_stations->open(m_data->path(), [](const Site *site, const QString &problem) {
            if (!site)
                qFatal("%s", qPrintable(problem));
        });
        m_shell.emplace(*m_stations);
        if (!m_shell->load(QStringLiteral(PLUGIN_PATH), &error))
            qFatal("%s", qPrintable(error));
        m_shell->bench().openedRecording()->setReplayProgram(QStringLiteral(WORKBENCH_PATH),
                                                             QStringLiteral(PLUGIN_PATH));
        m_shell->enter(*engine);
        m_lab.emplace(*m_stations, m_shell->bench(), m_shell->framework());
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
