#include "DemoSite.h"
#include "Installation.h"
#include "PluginBase.h"
#include "Protocol.h"
#include "Site.h"

#include <QtCore/QSettings>
#include <QtCore/QTemporaryDir>
#include <QtQml/QQmlContext>
#include <QtQml/QQmlEngine>
#include <QtQuickControls2/QQuickStyle>
#include <QtQuickTest/quicktest.h>

using namespace workbench;
using namespace Qt::StringLiterals;

/// What the tests see and do behind the window's back.
class Lab : public QObject
{
    Q_OBJECT

public:
    Lab(Site &site, Bench &bench, standin::Framework &framework)
        : m_site(site)
        , m_bench(bench)
        , m_framework(framework)
    {
    }

    /// Everything as it was at the start: faults gone, settings allowed, and on each camera
    /// PerCamera bookmarks, one every hour back from now, a quarter of an hour long. Description,
    /// creator and group follow from their position.
    Q_INVOKABLE void reset()
    {
        constexpr int PerCamera = 30;
        constexpr qint64 Hour = 3'600'000;
        static const QStringList descriptions{u"white van at the gate"_s, u"door left open"_s,
                                              u"delivery"_s};
        m_framework.rules().reset();
        m_site.setSettingPermission(true);
        const auto stations = m_site.stations();
        for (Station *station : stations) {
            station->execute(QLatin1String(protocol::command::RemoveAllBookmarks), QVariant());
            QList<Bookmark> bookmarks;
            for (const Camera &camera : station->config().cameras) {
                for (int i = 0; i < PerCamera; ++i) {
                    Bookmark bookmark;
                    bookmark.cameraID = camera.cameraID;
                    bookmark.locationID = station->config().locationID;
                    bookmark.start = m_bench.now() - (i + 1) * Hour;
                    bookmark.end = bookmark.start + Hour / 4;
                    bookmark.description = descriptions.at(i % 3);
                    bookmark.creator = i % 2 ? u"guard"_s : u"operator"_s;
                    bookmark.group = i % 5 ? QString() : u"night"_s;
                    bookmarks.append(bookmark);
                }
            }
            station->insert(bookmarks);
        }
    }

    /// The bookmarks that a station keeps, as the server hands them out.
    Q_INVOKABLE QVariantList stored(const QString &relayPath) const
    {
        return m_site.station(relayPath)
            ->execute(QLatin1String(protocol::command::QueryAllBookmarks), QVariantMap())
            .result.toMap()
            .value(protocol::key::Bookmarks)
            .toList();
    }

    Q_INVOKABLE void setSettingPermission(bool allowed) { m_site.setSettingPermission(allowed); }

private:
    Site &m_site;
    Bench &m_bench;
    standin::Framework &m_framework;
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
        m_site = Site::open(m_data->path(), demoStations(), &error);
        if (!m_site)
            qFatal("%s", qPrintable(error));
        m_installation.emplace(*m_site);
        if (!m_installation->load(QStringLiteral(PLUGIN_PATH), &error))
            qFatal("%s", qPrintable(error));
        m_installation->enter(*engine);
        m_lab.emplace(*m_site, m_installation->bench(), m_installation->framework());
        m_lab->reset();

        QVariantMap properties = m_installation->initialProperties();
        properties.insert(u"lab"_s, QVariant::fromValue<QObject *>(&*m_lab));
        for (auto it = properties.cbegin(); it != properties.cend(); ++it)
            engine->rootContext()->setContextProperty(it.key(), it.value());
    }

    void cleanupTestCase()
    {
        m_lab.reset();
        m_installation.reset();
        m_site.reset();
        m_data.reset();
    }

private:
    QTemporaryDir m_settings;
    std::optional<QTemporaryDir> m_data;
    std::unique_ptr<Site> m_site;
    std::optional<Installation> m_installation;
    std::optional<Lab> m_lab;
};

QUICK_TEST_MAIN_WITH_SETUP(window, Setup)
#include "tst_window.moc"
