#include "Replay.h"

#include "Comparer.h"
#include "EntryTree.h"
#include "FrameworkWrapperBase.h"
#include "PluginBase.h"
#include "RecordedCall.h"
#include "SignalReceiver.h"

#include <QtCore/QCoreApplication>
#include <QtCore/QHash>

#include <algorithm>
#include <utility>

namespace workbench::replay {

namespace {

using Kind = TrafficEntry::Kind;

bool isSameThing(const TrafficEntry &left, const TrafficEntry &right)
{
    return left.kind == right.kind && left.name == right.name && left.relayPath == right.relayPath;
}

/// An input of the plug-in during its call, with the position in the recorded entries inside it.
struct Frame
{
    const EntryTree &expected;
    Frame *outer = nullptr;
    size_t next = 0;

    bool atEnd() const { return next == expected.size(); }
    const EntryNode &take() { return expected[next++]; }
};

/// The host of the replayed plug-in: makes the recorded inputs and records the outputs.
class Player final : public FrameworkWrapperBase
{
public:
    Player(const Recording &recording, PluginBase &plugin);
    ~Player() = default;
    Q_DISABLE_COPY_MOVE(Player)

    /// @return the entries of this session
    QList<Recording::Line> play();

    bool SendCommand(void *hostHandle, const QString &pluginID, const QString &command,
                     const QVariant &payload, void *context, bool flag,
                     const QString &relayPath) override;
    QObject *FindPlugin(void *hostHandle, const QString &pluginID) override;

private:
    void give(const EntryNode &node);
    void passTo(Frame &frame, size_t position);
    bool noteOutput(TrafficEntry output, void *context);
    void note(TrafficEntry entry);
    int numberOf(const void *context);

    PluginBase &m_plugin;
    standin::Topology m_topology;
    EntryTree m_tree;
    QList<Recording::Line> m_played;
    Frame *m_frame = nullptr; ///< the innermost frame
    int m_depth = 0;
    QHash<quint64, void *>
        m_contexts; ///< contexts in this session, by the recorded number of the command
    QHash<const void *, int> m_numbers; ///< numbers of the contexts in this session
    RecordedCall m_call;
    standin::SignalReceiver m_receiver;
};

Player::Player(const Recording &recording, PluginBase &plugin)
    : m_plugin(plugin)
    , m_tree(treeOf(recording.lines))
    , m_call(plugin)
    , m_receiver(&plugin, [this](const QMetaMethod &signal, const QVariantList &arguments) {
        TrafficEntry entry;
        entry.kind = Kind::Signal;
        entry.name = QString::fromLatin1(signal.name());
        entry.value = arguments;
        noteOutput(std::move(entry), nullptr);
    })
{
    for (const standin::Topology::Node &node : recording.header.topology)
        m_topology.setNode(node);
}

QList<Recording::Line> Player::play()
{
    Frame root{m_tree};
    m_frame = &root;
    m_plugin.InitialPluginBase(nullptr, nullptr, this);
    for (size_t position = 0; position < m_tree.size(); ++position) {
        // Outputs without an enclosing input come from the event loop.
        if (root.next == position && m_tree[position].entry().isOutput())
            QCoreApplication::processEvents();
        passTo(root, position + 1);
    }
    m_frame = nullptr;
    return m_played;
}

bool Player::SendCommand(void * /*hostHandle*/, const QString & /*pluginID*/,
                         const QString &command, const QVariant &payload, void *context,
                         bool /*flag*/, const QString &relayPath)
{
    TrafficEntry entry;
    entry.kind = Kind::Sent;
    entry.name = command;
    entry.value = payload;
    entry.relayPath = relayPath;
    return noteOutput(std::move(entry), context);
}

QObject *Player::FindPlugin(void * /*hostHandle*/, const QString &pluginID)
{
    return pluginID == standin::Topology::pluginID() ? &m_topology : nullptr;
}

void Player::give(const EntryNode &node)
{
    const TrafficEntry &entry = node.entry();
    if (entry.kind == Kind::Answered && !m_contexts.contains(entry.request))
        return; // the plug-in did not send the command
    const qsizetype position = m_played.size();
    note(entry);
    Frame frame{node.inner, m_frame};
    m_frame = &frame;
    ++m_depth;
    if (entry.kind == Kind::Call)
        m_played[position].entry.result = m_call.make(entry.name, entry.value.toList());
    else if (entry.kind == Kind::Connection)
        m_plugin.PluginServerConnected();
    else if (entry.kind == Kind::Answered)
        m_plugin.CommandProcessor(entry.name, entry.value, m_contexts.value(entry.request),
                                  entry.code, QString(), false, entry.relayPath);
    else
        m_plugin.EventProcessor(entry.name, 0, 0, 0, entry.value, entry.relayPath);
    passTo(frame, frame.expected.size());
    --m_depth;
    m_frame = frame.outer;
}

/// Records an output of the plug-in. Makes the recorded inputs before the next recorded output of
/// that kind and name, and those directly after it.
/// @return true unless it is a command that the recorded host rejected
bool Player::noteOutput(TrafficEntry output, void *context)
{
    if (!m_frame)
        return true;
    output.context = numberOf(context);
    Frame &frame = *m_frame;
    const auto begin = frame.expected.cbegin();
    const auto match =
        std::find_if(begin + static_cast<std::ptrdiff_t>(frame.next), frame.expected.cend(),
                     [&](const EntryNode &node) { return isSameThing(node.entry(), output); });
    if (match == frame.expected.cend()) {
        note(std::move(output));
        return true;
    }
    passTo(frame, static_cast<size_t>(match - begin));
    const TrafficEntry &recorded = frame.take().entry();
    output.request = recorded.request;
    output.accepted = recorded.accepted;
    note(std::move(output));
    if (recorded.kind == Kind::Sent)
        m_contexts.insert(recorded.request, context);
    // Inputs inside the output: calls from slots, answers inside the send call.
    while (!frame.atEnd() && !frame.expected[frame.next].entry().isOutput())
        give(frame.take());
    return recorded.accepted;
}

/// Makes the inputs before a position. The plug-in did not send the outputs before it.
void Player::passTo(Frame &frame, size_t position)
{
    while (frame.next < position) {
        const EntryNode &node = frame.take();
        if (!node.entry().isOutput())
            give(node);
    }
}

void Player::note(TrafficEntry entry)
{
    entry.depth = m_depth;
    m_played.append({0, std::move(entry)});
}

int Player::numberOf(const void *context)
{
    if (!context)
        return 0;
    const auto known = m_numbers.constFind(context);
    return known != m_numbers.cend() ? *known
                                     : *m_numbers.insert(context, int(m_numbers.size()) + 1);
}

} // namespace

Comparison run(const QString &file, PluginBase &plugin)
{
    Comparison comparison;
    comparison.file = file;
    const std::optional<Recording> recording = Recording::read(file, &comparison.error);
    if (!recording)
        return comparison;
    comparison.notes = notesOn(recording->header, Recording::Header::ofThisProcess());
    if (!recording->header.complete)
        comparison.notes.append(QStringLiteral(
            "entries or a large payload are missing: the plug-in does not have the state that it "
            "had then"));
    comparison.badLines = recording->badLines;
    compareEntries(recording->lines, Player(*recording, plugin).play(), &comparison);
    return comparison;
}

} // namespace workbench::replay
