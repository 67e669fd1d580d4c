#include "Implementations.h"

#include "Data.h"
#include "FrameworkWrapperBase.h"
#include "PluginBase.h"

#include <QtCore/QElapsedTimer>
#include <QtCore/QPluginLoader>

#include <malloc.h>

#include <algorithm>
#include <limits>

using namespace Qt::StringLiterals;

namespace {

QString &library()
{
    static QString path = QStringLiteral(TESSALINE_PLUGIN_PATH);
    return path;
}

/// A topology that returns prepared maps, so that the host's cost is not measured.
class FixedTopology : public QObject
{
    Q_OBJECT

public:
    Q_INVOKABLE QVariantMap getValuesFromModel(int, const QString &, const QString &valueRole)
    {
        return valueRole == u"nameRole"_s ? m_names : m_types;
    }

private:
    const QVariantMap m_names = data::cameraNames();
    const QVariantMap m_types{{u"A"_s, 1}, {u"B"_s, 1}};
};

/// The library in a minimal host, called as QML and the host call it.
class Plugin : public Implementation
{
public:
    explicit Plugin(int count)
        : m_count(count)
        , m_loader(library())
        , m_object(m_loader.instance())
        , m_plugin(qobject_cast<PluginBase *>(m_object))
    {
        if (!m_plugin)
            qFatal("%s", qPrintable(m_loader.errorString()));
        m_plugin->InitialPluginBase(nullptr, nullptr, &m_host);
        answer(u"QuerySevTimezone"_s, data::timeZone(), nullptr, {});
        m_answer = QVariantMap{{u"Bookmarks"_s, data::serverRecords(count)}};
        queryAll();
        storeAnswer();
    }
    ~Plugin() override { delete m_object; }
    Q_DISABLE_COPY_MOVE(Plugin)

    const char *name() const override { return "Tessaline"; }

    std::function<void()> work(Job job) override
    {
        switch (job) {
        case Job::ForgetAll:
            return [this] { queryAll(); };
        case Job::StoreAnswer:
            return [this] { storeAnswer(); };
        case Job::ManyAnswers:
            return [this, answers = answersOfOne()] { storeAnswers(answers); };
        case Job::EmptyAnswers:
            return [this, answers = QVariantList(m_count, QVariant(QVariantMap()))] {
                storeAnswers(answers);
            };
        case Job::GroupBatch:
            return [this, targets = data::batchTargets(m_count)] { groupBatch(targets); };
        case Job::TimelineItems:
            return [this] { fillTimeline(); };
        case Job::ListOfCamera:
        case Job::ListOfAll:
            return [this, camera = filterOf(job).value(u"nodeID"_s).toString()] { list(camera); };
        default:
            return [this, filter = filterOf(job)] { getPage(filter); };
        }
    }

    void prepare(Job job) override
    {
        m_list = {};
        if (job != Job::StoreAnswer && !m_isEmpty)
            return;
        queryAll(); // the previous query may be complete
        if (job != Job::StoreAnswer)
            storeAnswer();
    }

    double bytesPerBookmark()
    {
        queryAll();
        const auto before = mallinfo2();
        storeAnswer();
        const auto after = mallinfo2();
        const auto used = [](const auto &info) { return double(info.uordblks + info.hblkhd); };
        return (used(after) - used(before)) / m_count;
    }

    /// Returns the time of the first use of a group key divided by that of the second. Uses the
    /// shortest of several times, so that a slow moment of the machine does not count.
    double firstUse(const QString &groupKey)
    {
        QVariantMap filter = filterOf(Job::PanelByDate);
        filter[u"groupKey"_s] = groupKey;
        qint64 shortest[2] = {std::numeric_limits<qint64>::max(),
                              std::numeric_limits<qint64>::max()};
        for (int i = 0; i < 5; ++i) {
            queryAll();
            storeAnswer();
            for (qint64 &time : shortest) {
                QElapsedTimer timer;
                timer.start();
                getPage(filter);
                time = std::min(time, timer.nsecsElapsed());
            }
        }
        return double(shortest[0]) / double(shortest[1]);
    }

private:
    /// A host that stores only the last context. Copies of the payloads would be measured, too.
    class Host final : public FrameworkWrapperBase
    {
    public:
        ~Host() = default;
        bool SendCommand(void *, const QString &, const QString &, const QVariant &, void *context,
                         bool, const QString &) override
        {
            lastContext = context;
            return accepts;
        }
        QObject *FindPlugin(void *, const QString &) override { return &m_topology; }

        void *lastContext = nullptr;
        bool accepts = true;

    private:
        FixedTopology m_topology;
    };

    void answer(const QString &command, const QVariant &result, void *context,
                const QString &relayPath)
    {
        m_plugin->CommandProcessor(command, result, context, u"0"_s, {}, false, relayPath);
    }

    /// Starts a query, for which the plug-in removes all bookmarks.
    void queryAll()
    {
        m_host.accepts = true;
        QMetaObject::invokeMethod(m_object, "queryAllBookmarks");
        m_query = m_host.lastContext;
        m_isEmpty = true;
    }

    void storeAnswer()
    {
        answer(u"QueryAllBookmars"_s, m_answer, m_query, u"A"_s);
        answer(u"QueryAllBookmars"_s, QVariant(), m_query, u"B"_s);
        m_isEmpty = false;
    }

    QVariantList answersOfOne() const
    {
        QVariantList answers;
        const QVariantList records = m_answer.toMap().value(u"Bookmarks"_s).toList();
        for (const QVariant &record : records)
            answers.append(QVariantMap{{u"Bookmarks"_s, QVariantList{record}}});
        return answers;
    }

    /// Delivers the answers of station A, then an empty answer of station B, which completes the
    /// query.
    void storeAnswers(const QVariantList &answers)
    {
        queryAll();
        for (const QVariant &one : answers)
            answer(u"QueryAllBookmars"_s, one, m_query, u"A"_s);
        answer(u"QueryAllBookmars"_s, QVariant(), m_query, u"B"_s);
        m_isEmpty = answers.constFirst().toMap().isEmpty();
    }

    void groupBatch(const QVariantList &targets)
    {
        m_host.accepts = false; // so that no context waits for an answer
        QMetaObject::invokeMethod(m_object, "addBookmarks", Q_ARG(QVariantList, targets),
                                  Q_ARG(qlonglong, 1), Q_ARG(qlonglong, 2),
                                  Q_ARG(QString, u"Alarm"_s), Q_ARG(QString, u"rule"_s),
                                  Q_ARG(QString, u"alarms"_s));
    }

    void fillTimeline()
    {
        m_host.accepts = true;
        QObject *model = nullptr;
        // The type's name must be "QObject*" without a blank.
        // clang-format off
        QMetaObject::invokeMethod(m_object, "getBookmarkModelForTimeline",
                                  Q_RETURN_ARG(QObject*, model), Q_ARG(QString, u"cell"_s));
        // clang-format on
        QMetaObject::invokeMethod(m_object, "setTimelineFocusInfo", Q_ARG(QString, u"location-1"_s),
                                  Q_ARG(QString, u"A"_s), Q_ARG(QString, u"cell"_s));
        QMetaObject::invokeMethod(m_object, "setTimelineBoundary", Q_ARG(qlonglong, 1),
                                  Q_ARG(qlonglong, 2), Q_ARG(QString, u"cell"_s));
        answer(u"QueryBookmarkForTimeline"_s, m_answer, m_host.lastContext, u"A"_s);
        QMetaObject::invokeMethod(m_object, "removeTimelineModel", Q_ARG(QString, u"cell"_s));
    }

    void getPage(const QVariantMap &filter)
    {
        QVariantMap page;
        QMetaObject::invokeMethod(m_object, "getFilteredBookmarkList",
                                  Q_RETURN_ARG(QVariantMap, page), Q_ARG(QVariantMap, filter));
        if (page.size() != 2)
            qFatal("The plug-in returned no page");
    }

    void list(const QString &camera)
    {
        QMetaObject::invokeMethod(m_object, "getBookmarkListByNodeID",
                                  Q_RETURN_ARG(QVariantList, m_list), Q_ARG(QString, camera));
        if (m_list.isEmpty() && camera.isEmpty())
            qFatal("The plug-in returned no list");
    }

    int m_count;
    Host m_host;
    QPluginLoader m_loader;
    QObject *m_object;
    PluginBase *m_plugin;
    QVariant m_answer;
    QVariantList m_list;     ///< result of the last list job
    void *m_query = nullptr; ///< context of the newest query of all
    bool m_isEmpty = true;
};

} // namespace

void setLibrary(const QString &path)
{
    library() = path;
}

PluginFigures measurePlugin(int count)
{
    Plugin plugin(count);
    PluginFigures figures;
    figures.bytesPerBookmark = plugin.bytesPerBookmark();
    for (const QString &key : {u"cameraName"_s, u"creator"_s, u"group"_s, u"displayDate"_s,
                               u"locID"_s, u"relayPath"_s, u"description"_s})
        figures.firstUse[key] = plugin.firstUse(key);
    return figures;
}

std::unique_ptr<Implementation> makePlugin(int count)
{
    return std::make_unique<Plugin>(count);
}

#include "PluginImplementation.moc"
