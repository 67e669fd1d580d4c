#include "Recorder.h"

#include "PluginBase.h"
#include "TrafficModel.h"
#include "framework/Framework.h"

#include <QtCore/QDateTime>
#include <QtCore/QDir>

#include <utility>

namespace workbench {

Recorder::Recorder(PluginBase &plugin, standin::Framework &framework, TrafficModel &model,
                   QObject *parent)
    : TrafficSource(model, parent)
    , m_plugin(plugin)
    , m_framework(framework)
    , m_model(model)
    , m_receiver(&plugin, [this](const QMetaMethod &signal, const QVariantList &arguments) {
        TrafficEntry entry;
        entry.kind = TrafficEntry::Kind::Signal;
        entry.name = QString::fromLatin1(signal.name());
        entry.value = arguments;
        entry.depth = depth();
        m_model.append(std::move(entry));
    })
{
}

void Recorder::noteTraffic(const standin::Traffic &traffic)
{
    using Kind = standin::Traffic::Kind;
    TrafficEntry entry;
    switch (traffic.kind) {
    case Kind::Sent:
        entry.kind = TrafficEntry::Kind::Sent;
        entry.request = traffic.sequence;
        break;
    case Kind::Answered:
        entry.kind = TrafficEntry::Kind::Answered;
        entry.request = traffic.request;
        break;
    case Kind::Event:
        entry.kind = TrafficEntry::Kind::Event;
        break;
    }
    entry.name = traffic.name;
    entry.relayPath = traffic.relayPath;
    entry.context = numberOf(traffic.context);
    entry.code = traffic.resultCode;
    entry.accepted = traffic.accepted;
    entry.value = traffic.value;
    entry.depth = depth();
    m_model.append(std::move(entry));
}

quint64 Recorder::beginCall(const QString &method, const QVariantList &arguments)
{
    TrafficEntry entry;
    entry.kind = TrafficEntry::Kind::Call;
    entry.name = method;
    entry.value = arguments;
    return begin(std::move(entry));
}

quint64 Recorder::beginConnection()
{
    TrafficEntry entry;
    entry.kind = TrafficEntry::Kind::Connection;
    entry.name = QStringLiteral("PluginServerConnected");
    return begin(std::move(entry));
}

quint64 Recorder::begin(TrafficEntry entry)
{
    entry.depth = depth();
    ++m_calls;
    return m_model.append(std::move(entry));
}

void Recorder::end(quint64 call, const QVariant &result)
{
    --m_calls;
    m_model.setResult(call, result);
}

Recording::Header Recorder::header() const
{
    Recording::Header header = Recording::Header::ofThisProcess();
    header.pluginName = m_plugin.name;
    header.start = m_model.startTime();
    header.complete = m_model.isComplete();
    if (const auto *topology = qobject_cast<standin::Topology *>(
            m_framework.FindPlugin(nullptr, standin::Topology::pluginID())))
        header.topology = topology->nodes();
    return header;
}

QString Recorder::newFile()
{
    const QString now = QDateTime::currentDateTime().toString(QStringLiteral("yyyyMMdd-HHmmss"));
    return QDir::toNativeSeparators(
        QDir::home().filePath(QStringLiteral("tessaline-%1.jsonl").arg(now)));
}

bool Recorder::exists(const QString &path)
{
    return QFileInfo::exists(path);
}

int Recorder::depth() const
{
    return m_calls + m_framework.deliveries();
}

int Recorder::numberOf(const void *context)
{
    if (!context)
        return 0;
    const auto known = m_contexts.constFind(context);
    return known != m_contexts.cend() ? *known
                                      : *m_contexts.insert(context, int(m_contexts.size()) + 1);
}

} // namespace workbench
