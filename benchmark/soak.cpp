// Soak test: calls the plug-in at random in a host with stations on SQLite and prints the memory of
// the process. Exits with 1 if the process grows by more than 4 MiB after the first fifth.
//   tessaline-soak [OPERATIONS]      1,000,000 by default

#include "LoadedPlugin.h"
#include "MethodCall.h"
#include "PluginBase.h"
#include "StationNetwork.h"
#include "framework/Framework.h"
#include "topology/Topology.h"

#include <QtCore/QCoreApplication>
#include <QtCore/QElapsedTimer>
#include <QtCore/QFile>
#include <QtCore/QPointer>
#include <QtCore/QTemporaryDir>

#include <cstdio>
#include <cstdlib>
#include <memory>
#include <random>

#include <unistd.h>

using namespace Qt::StringLiterals;

namespace {

constexpr int StationCount = 3;
constexpr qint64 Day = 86'400'000;
constexpr int MaxBookmarks = 200; ///< at all stations; more are removed

qint64 residentKiB()
{
    QFile file(u"/proc/self/statm"_s);
    if (!file.open(QIODevice::ReadOnly))
        return 0;
    return file.readAll().split(' ').value(1).toLongLong() * sysconf(_SC_PAGESIZE) / 1024;
}

QString stationName(int station)
{
    return QString(QChar(u'A' + station));
}

class Soak
{
public:
    Soak()
    {
        QList<stations::StationConfig> configs;
        for (int i = 0; i < StationCount; ++i) {
            const QString name = stationName(i);
            configs.append({name, name, u"l"_s, {{u"1"_s, u"Camera"_s}}, {}});
            m_topology.setStation(name, u"Station "_s + name);
            m_topology.setCamera(name + u"/1"_s, u"Camera "_s + name);
            m_targets.append(QVariantMap{
                {u"CameraID"_s, u"1"_s}, {u"LocationID"_s, u"l"_s}, {u"relayPath"_s, name}});
        }
        QString error;
        m_network = stations::StationNetwork::open(m_folder.path(), configs, &error);
        m_plugin = m_library.object();
        if (!m_network || !m_plugin)
            qFatal("%s%s", qPrintable(error), qPrintable(m_library.error()));
        m_framework.addPlugin(standin::Topology::pluginID(), &m_topology);
        m_framework.setServer(m_network.get());
        m_framework.setRecording(false);
        start();
    }
    ~Soak() { delete m_plugin.data(); }
    Q_DISABLE_COPY_MOVE(Soak)

    void step()
    {
        const int station = below(StationCount);
        const QString relayPath = stationName(station);
        const QString cell = QString::number(below(8));
        const qint64 start = 1'600'000'000'000 + below(400) * Day;
        switch (below(16)) {
        case 0:
        case 1:
            return call("addBookmark", {u"1"_s, u"l"_s, relayPath, start, start + 1000, u"text"_s,
                                        u"me"_s, u"g"_s});
        case 2:
            return call("addBookmarks",
                        {QVariant(m_targets), start, start + 1000, u"d"_s, u"me"_s, QString()});
        case 3:
            return remove();
        case 4:
            return call("updateBookmark", {someID(), u"new"_s, QString()});
        case 5:
            return call("queryAllBookmarks", {});
        case 6:
            return call("queryBookmarkForRecent", {u"1"_s, relayPath, uchar(20)});
        case 7:
            return call("queryBookmarkForAPI",
                        {QVariantList{relayPath + u"/1"_s}, start, start + Day});
        case 8:
            call("getBookmarkModelForTimeline", {cell});
            return call("setTimelineFocusInfo", {u"l"_s, relayPath, cell});
        case 9:
        case 10:
            return call("setTimelineBoundary", {start, start + Day, cell});
        case 11:
            return call("removeTimelineModel", {cell});
        case 12:
            return page(start);
        case 13:
            return changeHost(relayPath);
        case 14:
            m_framework.sendEvent(u"AddBookmark"_s,
                                  QVariantMap{{u"BookmarkID"_s, cell}, {u"LocationID"_s, u"l"_s}},
                                  relayPath);
            return;
        default:
            return call("getBookmarkListByNodeID", {relayPath + u"/1"_s});
        }
    }

private:
    int below(int limit) { return int(m_random() >> 8) % limit; }

    void call(const char *method, const QVariantList &arguments)
    {
        if (!driver::callByName(*m_plugin, method, arguments))
            qFatal("%s: the plug-in has no such method with these arguments", method);
        QCoreApplication::processEvents();
    }

    QVariantList allBookmarks()
    {
        return driver::callByName(*m_plugin, "getBookmarkListByNodeID", {QString()})
            .value_or(QVariant())
            .toList();
    }

    QString someID()
    {
        const QVariantList list = allBookmarks();
        return list.isEmpty()
                   ? u"?"_s
                   : list.at(below(int(list.size()))).toMap()[u"bookmarkID"_s].toString();
    }

    void remove()
    {
        const QVariantList list = allBookmarks();
        if (list.size() > MaxBookmarks)
            return call("removeAllBookmarks", {stationName(below(StationCount))});
        QVariantList batch;
        for (const QVariant &element : list.mid(below(10), 3)) {
            const QVariantMap bookmark = element.toMap();
            batch.append(QVariantMap{{u"BookmarkID"_s, bookmark[u"bookmarkID"_s]},
                                     {u"relayPath"_s, bookmark[u"relayPath"_s]}});
        }
        call("deleteBookmarks", {QVariant(batch)});
    }

    void page(qint64 start)
    {
        static const QString keys[] = {u"displayDate"_s, u"cameraName"_s, u"creator"_s};
        call("getFilteredBookmarkList", {QVariantMap{{u"groupKey"_s, keys[below(3)]},
                                                     {u"text"_s, below(2) ? u"te"_s : QString()},
                                                     {u"startTimestamp"_s, start - 100 * Day},
                                                     {u"endTimestamp"_s, start + 100 * Day},
                                                     {u"pageNumber"_s, below(3)}}});
    }

    /// Makes a station fail or answer twice for a while; sometimes restarts the client.
    void changeHost(const QString &relayPath)
    {
        using standin::Delivery;
        const Delivery deliveries[] = {Delivery::queued(), Delivery::failed(u"-1"_s),
                                       Delivery::twice(), Delivery::rejected(),
                                       Delivery::immediate()};
        m_framework.rules().setForStation(relayPath, deliveries[below(5)]);
        if (below(100) == 0)
            start();
    }

    void start()
    {
        delete m_plugin.data();
        m_plugin = m_library.object();
        m_framework.addPlugin(u"2F6394EE90434A7190D7511370AFAE17"_s, m_plugin);
        auto *const plugin = qobject_cast<PluginBase *>(m_plugin);
        plugin->InitialPluginBase(nullptr, this, &m_framework);
        plugin->PluginServerConnected();
        QCoreApplication::processEvents();
    }

    QTemporaryDir m_folder;
    std::unique_ptr<stations::StationNetwork> m_network;
    standin::Topology m_topology;
    standin::Framework m_framework;
    driver::LoadedPlugin m_library{QStringLiteral(TESSALINE_PLUGIN_PATH)};
    QPointer<QObject> m_plugin;
    QVariantList m_targets;
    std::minstd_rand m_random{1};
};

} // namespace

int main(int argc, char **argv)
{
    const QCoreApplication application(argc, argv);
    const int operations = argc > 1 ? qMax(10, std::atoi(argv[1])) : 1'000'000;
    Soak soak;
    QElapsedTimer timer;
    timer.start();
    qint64 early = 0;
    for (int done = 1; done <= operations; ++done) {
        soak.step();
        if (done % (operations / 10) != 0)
            continue;
        std::printf("%9d operations, %4lld s, %lld KiB\n", done,
                    static_cast<long long>(timer.elapsed() / 1000),
                    static_cast<long long>(residentKiB()));
        std::fflush(stdout);
        if (done == operations / 10 * 2)
            early = residentKiB(); // caches are full now
    }
    const qint64 grown = residentKiB() - early;
    std::printf("The process has grown by %lld KiB since the first fifth.\n",
                static_cast<long long>(grown));
    return grown > 4096 ? 1 : 0;
}
