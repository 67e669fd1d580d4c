#include "FuzzInput.h"
#include "MethodCall.h"
#include "Names.h"
#include "Tessaline.h"
#include "framework/Framework.h"
#include "logging/LogControl.h"
#include "topology/Topology.h"

#include <QtCore/QCoreApplication>
#include <QtCore/QPointer>

#include <cstdlib>
#include <limits>
#include <memory>

using namespace tessaline;
using standin::Delivery;

namespace {

/// A host with the plug-in. The input selects every call, answer and event.
class Host
{
public:
    explicit Host(FuzzInput input)
        : m_input(input)
    {
        m_topology.setStation(heapString("A"), heapString("Station"));
        m_topology.setCamera(heapString("A/1"), heapString("Camera"));
        m_framework.addPlugin(identity::TopologyPluginID, &m_topology);
        m_framework.rules().setDefault(Delivery::never());
        m_framework.setObserver([this](const standin::Traffic &) { stepInside(); });
        makePlugin();
    }
    ~Host()
    {
        m_stepsInside = 0;
        // Contexts belong to the library, not to the object. Answers end them before the next
        // input.
        makePlugin();
        const auto sent = m_sent;
        for (const standin::SentCommand &command : sent)
            answer(command, {}, heapString("-1"));
        delete m_plugin.data();
    }
    Q_DISABLE_COPY_MOVE(Host)

    void run()
    {
        while (!m_input.isEmpty()) {
            step();
            m_sent += m_framework.sent();
            m_framework.clearSent();
            if (!m_plugin)
                makePlugin();
        }
        checkPage();
    }

private:
    void makePlugin()
    {
        delete m_plugin.data();
        m_plugin = new Tessaline;
        m_framework.addPlugin(identity::PluginID, m_plugin);
        m_plugin->InitialPluginBase(nullptr, this, &m_framework);
        QObject::connect(m_plugin, &Tessaline::addBookmarksResponsed, &m_topology,
                         [this] { stepInside(); });
        QObject::connect(m_plugin, &Tessaline::queryAllBookmarksResponsed, &m_topology,
                         [this] { stepInside(); });
        QObject::connect(m_plugin, &Tessaline::addBookmarkResponsed, &m_topology,
                         [this] { stepInside(); });
    }

    void stepInside()
    {
        if (m_stepsInside > 0 && m_plugin && !m_input.isEmpty()) {
            --m_stepsInside;
            step();
        }
    }

    void step()
    {
        switch (m_input.below(16)) {
        case 0:
            m_plugin->EventProcessor(event::AddBookmark, 0, 0, 0, m_input.answer(), m_input.text());
            break;
        case 1:
            answerAnything();
            break;
        case 2:
            m_stepsInside += m_input.below(4);
            break;
        case 3:
            changeHost();
            break;
        case 4:
            answerAnything();
            m_plugin ? m_plugin->setBookmarkNumberPerPage(int(m_input.integer())) : void();
            break;
        case 5:
        case 6:
        case 7:
        case 8:
            answerSent();
            break;
        default:
            callMethod();
        }
    }

    void callMethod()
    {
        const QMetaObject *const metaObject = m_plugin->metaObject();
        const int own = metaObject->methodCount() - metaObject->methodOffset();
        const QMetaMethod method =
            metaObject->method(metaObject->methodOffset() + m_input.below(own));
        if (method.methodType() == QMetaMethod::Signal)
            return;
        QVariantList arguments;
        for (int i = 0; i < method.parameterCount(); ++i)
            arguments.append(m_input.valueOf(method.parameterMetaType(i)));
        driver::callMethod(*m_plugin, method, arguments);
    }

    void answer(const standin::SentCommand &command, const QVariant &result, const QString &code)
    {
        if (m_plugin)
            m_plugin->CommandProcessor(command.command, result, command.context, code, QString(),
                                       false, command.relayPath);
    }

    void answerSent()
    {
        if (m_sent.isEmpty())
            return;
        standin::SentCommand command = m_sent.at(m_input.below(int(m_sent.size())));
        const int change = m_input.below(8);
        if (change == 0)
            command.context = m_sent.at(m_input.below(int(m_sent.size()))).context;
        if (change == 1)
            command.relayPath = m_input.text();
        answer(command, m_input.answer(), change == 2 ? m_input.text() : resultCode::Success);
    }

    void answerAnything()
    {
        static const QString commands[] = {command::AddBookmark,
                                           command::DeleteBookmark,
                                           command::DeleteBookmarks,
                                           command::UpdateBookmark,
                                           command::QueryBookmarkForRecent,
                                           command::QueryBookmarkForApi,
                                           command::QuerySevTimezone,
                                           command::QuerySettingPermission,
                                           command::GetRecycleSetting,
                                           command::QueryAllBookmarks,
                                           command::AddBookmarks};
        standin::SentCommand command;
        command.command = commands[m_input.below(11)];
        command.relayPath = m_input.text();
        answer(command, m_input.answer(), m_input.below(4) ? resultCode::Success : m_input.text());
    }

    void changeHost()
    {
        static const Delivery deliveries[] = {Delivery::never(), Delivery::rejected(),
                                              Delivery::immediate().failing(heapString("-1"))};
        const QString id = m_input.text();
        switch (m_input.below(6)) {
        case 0:
            m_topology.setNode({id, m_input.text(), m_input.value()});
            break;
        case 1:
            m_topology.remove(id);
            break;
        case 2:
            m_framework.rules().setForStation(id, deliveries[m_input.below(3)]);
            break;
        case 3:
            m_plugin->PluginServerConnected();
            break;
        case 4:
            m_plugin->CommandProcessor(command::QuerySettingPermission, true, nullptr,
                                       resultCode::Success, {}, false, {});
            break;
        default:
            delete m_plugin.data();
        }
    }

    /// Compares the number of bookmarks on a page without filters with the size of the list.
    void checkPage()
    {
        const QVariantMap page = m_plugin->getFilteredBookmarkList(
            {{filterKey::StartTimestamp, std::numeric_limits<qint64>::min()},
             {filterKey::EndTimestamp, std::numeric_limits<qint64>::max()}});
        if (page.value(pageKey::TotalBookmarkNumber) != m_plugin->getBookmarkList().size())
            std::abort();
    }

    FuzzInput m_input;
    standin::Topology m_topology;
    standin::Framework m_framework;
    QPointer<Tessaline> m_plugin;
    QList<standin::SentCommand> m_sent;
    int m_stepsInside = 0;
};

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    static int argumentCount = 0;
    static QCoreApplication application(argumentCount, nullptr);
    standin::logging::writeTo([](const standin::LogLine &) {});
    Host(FuzzInput(data, size)).run();
    return 0;
}
