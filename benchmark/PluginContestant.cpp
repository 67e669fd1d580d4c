#include "Contestants.h"

#include "Data.h"
#include "PluginBase.h"
#include "framework/Framework.h"
#include "topology/Topology.h"

#include <QtCore/QPluginLoader>

using namespace Qt::StringLiterals;

namespace {

/// The built library in the stand-in host, called as QML and the host call it.
class Plugin : public Contestant
{
public:
    explicit Plugin(int count)
        : m_count(count)
        , m_loader(QStringLiteral(TESSALINE_PLUGIN_PATH))
        , m_object(m_loader.instance())
        , m_plugin(qobject_cast<PluginBase *>(m_object))
    {
        if (!m_plugin)
            qFatal("%s", qPrintable(m_loader.errorString()));
        m_topology.setStation(u"A"_s, u"Harbour"_s);
        const QVariantMap names = data::cameraNames();
        for (auto name = names.cbegin(); name != names.cend(); ++name) {
            if (name.key() != u"A"_s)
                m_topology.setCamera(name.key(), name->toString());
        }
        m_framework.addPlugin(standin::Topology::pluginID(), &m_topology);
        m_plugin->InitialPluginBase(nullptr, nullptr, &m_host);
        m_host.topology = &m_topology;
        answer(u"QuerySevTimezone"_s, data::timeZone(), nullptr, {});
        m_answer = QVariantMap{{u"Bookmarks"_s, data::serverRecords(count)}};
        storeAnswer();
    }
    ~Plugin() override { delete m_object; }
    Q_DISABLE_COPY_MOVE(Plugin)

    const char *name() const override { return "Tessaline"; }

    std::function<void()> work(Job job) override
    {
        switch (job) {
        case Job::StoreAnswer:
            return [this] { storeAnswer(); };
        case Job::GroupBatch:
            return [this, targets = data::batchTargets(m_count)] { groupBatch(targets); };
        case Job::TimelineItems:
            return [this] { fillTimeline(); };
        default:
            return [this, question = questionOf(job)] { ask(question); };
        }
    }

private:
    /// A host that remembers where answers go and does nothing else: copies of its own would be
    /// measured too.
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
        QObject *FindPlugin(void *, const QString &) override { return topology; }

        void *lastContext = nullptr;
        bool accepts = true;
        QObject *topology = nullptr;
    };

    void answer(const QString &command, const QVariant &result, void *context,
                const QString &relayPath)
    {
        m_plugin->CommandProcessor(command, result, context, u"0"_s, {}, false, relayPath);
    }

    void storeAnswer()
    {
        m_host.accepts = true;
        QMetaObject::invokeMethod(m_object, "queryAllBookmarks");
        answer(u"QueryAllBookmars"_s, m_answer, m_host.lastContext, u"A"_s);
    }

    void groupBatch(const QVariantList &targets)
    {
        m_host.accepts = false; // nothing remains outstanding
        QMetaObject::invokeMethod(m_object, "addBookmarks", Q_ARG(QVariantList, targets),
                                  Q_ARG(qlonglong, 1), Q_ARG(qlonglong, 2),
                                  Q_ARG(QString, u"Alarm"_s), Q_ARG(QString, u"rule"_s),
                                  Q_ARG(QString, u"alarms"_s));
    }

    void fillTimeline()
    {
        m_host.accepts = true;
        QObject *model = nullptr;
        QMetaObject::invokeMethod(m_object, "getBookmarkModelForTimeline",
                                  Q_RETURN_ARG(QObject *, model), Q_ARG(QString, u"cell"_s));
        QMetaObject::invokeMethod(m_object, "setTimelineFocusInfo", Q_ARG(QString, u"location-1"_s),
                                  Q_ARG(QString, u"A"_s), Q_ARG(QString, u"cell"_s));
        QMetaObject::invokeMethod(m_object, "setTimelineBoundary", Q_ARG(qlonglong, 1),
                                  Q_ARG(qlonglong, 2), Q_ARG(QString, u"cell"_s));
        answer(u"QueryBookmarkForTimeline"_s, m_answer, m_host.lastContext, u"A"_s);
        QMetaObject::invokeMethod(m_object, "removeTimelineModel", Q_ARG(QString, u"cell"_s));
    }

    void ask(const QVariantMap &question)
    {
        QVariantMap page;
        QMetaObject::invokeMethod(m_object, "getFilteredBookmarkList",
                                  Q_RETURN_ARG(QVariantMap, page), Q_ARG(QVariantMap, question));
        if (page.size() != 2)
            qFatal("The plug-in did not answer");
    }

    int m_count;
    standin::Topology m_topology;
    standin::Framework m_framework;
    Host m_host;
    QPluginLoader m_loader;
    QObject *m_object;
    PluginBase *m_plugin;
    QVariant m_answer;
};

} // namespace

std::unique_ptr<Contestant> makePlugin(int count)
{
    return std::make_unique<Plugin>(count);
}
