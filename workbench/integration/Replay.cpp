#include "Replay.h"

#include "FrameworkWrapperBase.h"
#include "PluginBase.h"
#include "RecordedCall.h"
#include "RecordedValue.h"
#include "SignalReceiver.h"

#include <QtCore/QCoreApplication>
#include <QtCore/QHash>
#include <QtCore/QJsonArray>
#include <QtCore/QJsonObject>
#include <QtCore/QSet>

#include <algorithm>
#include <utility>
#include <vector>

namespace workbench::replay {

namespace {

using Kind = TrafficEntry::Kind;

/// A recorded line with those that happened inside it, in their order.
struct Node
{
    const Recording::Line *line = nullptr;
    std::vector<Node> inner;

    const TrafficEntry &entry() const { return line->entry; }
};

/// Reads the lines from @p position on that happened at @p depth or deeper.
std::vector<Node> nodesFrom(const QList<Recording::Line> &lines, qsizetype &position, int depth)
{
    std::vector<Node> nodes;
    while (position < lines.size() && lines.at(position).entry.depth >= depth) {
        Node node{&lines.at(position++), {}};
        if (!node.entry().isOutput())
            node.inner = nodesFrom(lines, position, node.entry().depth + 1);
        nodes.push_back(std::move(node));
    }
    return nodes;
}

struct ValueDifference
{
    QString path;
    QJsonValue expected;
    QJsonValue found;
};

ValueDifference firstDifference(const QJsonValue &expected, const QJsonValue &found,
                                const QString &path = {})
{
    if (expected.isObject() && found.isObject()) {
        const QJsonObject left = expected.toObject();
        const QJsonObject right = found.toObject();
        const QStringList keys = left.keys() + right.keys();
        for (const QString &key : keys) {
            if (left.value(key) != right.value(key))
                return firstDifference(left.value(key), right.value(key),
                                       path + QLatin1Char('.') + key);
        }
    }
    if (expected.isArray() && found.isArray()) {
        const QJsonArray left = expected.toArray();
        const QJsonArray right = found.toArray();
        for (qsizetype i = 0; i < std::max(left.size(), right.size()); ++i) {
            // Beyond its end a list holds undefined values.
            if (left.at(i) != right.at(i))
                return firstDifference(left.at(i), right.at(i),
                                       path + QStringLiteral("[%1]").arg(i));
        }
    }
    return {path, expected, found};
}

/// The value with plain numbers. QML has one type of numbers, so that the type which a method
/// returns is no behaviour.
QJsonValue withPlainNumbers(const QJsonValue &value)
{
    if (value.isArray()) {
        QJsonArray plain;
        const QJsonArray array = value.toArray();
        for (const auto &element : array)
            plain.append(withPlainNumbers(element));
        return plain;
    }
    if (!value.isObject())
        return value;
    QJsonObject object = value.toObject();
    QJsonValue number = object.value(QLatin1String("value"));
    if (object.contains(QLatin1String("$type")) && number.isDouble())
        return number;
    for (auto it = object.begin(); it != object.end(); ++it)
        it.value() = withPlainNumbers(it.value());
    return object;
}

QString describe(const TrafficEntry &entry)
{
    QString text = nameOf(entry.kind) + QLatin1Char(' ') + entry.name;
    if (!entry.relayPath.isEmpty())
        text += QLatin1String(" to ") + entry.relayPath;
    return text;
}

bool isSameThing(const TrafficEntry &left, const TrafficEntry &right)
{
    return left.kind == right.kind && left.name == right.name && left.relayPath == right.relayPath;
}

QString placeOf(const QString &what, const QString &path, const QJsonValue &value)
{
    return QStringLiteral("%1%2 is %3").arg(what, path, recordedvalue::brief(value));
}

/// An input while it is being given to the plug-in, and how far its outputs have come.
struct Frame
{
    const std::vector<Node> &expected;
    int line; ///< of the input
    Frame *outer = nullptr;
    size_t next = 0;
    QHash<int, const void *> contexts; ///< actual ones by recorded number

    bool atEnd() const { return next == expected.size(); }
    const Node &take() { return expected[next++]; }
};

/// The host of the replayed plug-in, which gives it the inputs and compares its outputs.
class Player final : public FrameworkWrapperBase
{
public:
    Player(const Recording &recording, PluginBase &plugin, Result &result);
    ~Player() = default;
    Q_DISABLE_COPY_MOVE(Player)

    void play();

    bool SendCommand(void *hostHandle, const QString &pluginID, const QString &command,
                     const QVariant &payload, void *context, bool flag,
                     const QString &relayPath) override;
    QObject *FindPlugin(void *hostHandle, const QString &pluginID) override;

private:
    void give(const Node &node);
    void answer(const Recording::Line &line);
    const TrafficEntry *compare(const TrafficEntry &found, void *context);
    void skipTo(Frame &frame, size_t position);
    void compareValues(int line, const QString &what, const QJsonValue &expected,
                       const QJsonValue &found);
    void compareContexts(Frame &frame, const Recording::Line &line, const void *context);
    void differ(int line, const QString &expected, const QString &found);

    PluginBase &m_plugin;
    Result &m_result;
    standin::Topology m_topology;
    std::vector<Node> m_nodes;
    Frame *m_frame = nullptr;          ///< the innermost
    QHash<quint64, void *> m_contexts; ///< of the commands sent now, by their recorded number
    QSet<quint64> m_sent;              ///< recorded numbers of these commands
    RecordedCall m_call;
    standin::SignalReceiver m_receiver;
};

Player::Player(const Recording &recording, PluginBase &plugin, Result &result)
    : m_plugin(plugin)
    , m_result(result)
    , m_call(plugin)
    , m_receiver(&plugin, [this](const QMetaMethod &signal, const QVariantList &arguments) {
        TrafficEntry entry;
        entry.kind = Kind::Signal;
        entry.name = QString::fromLatin1(signal.name());
        entry.value = arguments;
        compare(entry, nullptr);
    })
{
    for (const standin::Topology::Node &node : recording.header.topology)
        m_topology.setNode(node);
    qsizetype position = 0;
    m_nodes = nodesFrom(recording.lines, position, 0);
}

void Player::play()
{
    constexpr int headerLine = 1;
    Frame root{m_nodes, headerLine, nullptr, 0, {}};
    m_frame = &root;
    m_plugin.InitialPluginBase(nullptr, nullptr, this);
    for (size_t position = 0; position < m_nodes.size(); ++position) {
        // What came by itself comes from the event loop.
        if (root.next == position && m_nodes[position].entry().isOutput())
            QCoreApplication::processEvents();
        skipTo(root, position + 1);
    }
    m_frame = nullptr;
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
    const TrafficEntry *const recorded = compare(entry, context);
    return !recorded || recorded->accepted;
}

QObject *Player::FindPlugin(void * /*hostHandle*/, const QString &pluginID)
{
    return pluginID == standin::Topology::pluginID() ? &m_topology : nullptr;
}

void Player::give(const Node &node)
{
    const TrafficEntry &entry = node.entry();
    Frame frame{node.inner, node.line->number, m_frame, 0, {}};
    m_frame = &frame;
    ++m_result.inputs;
    if (entry.kind == Kind::Call) {
        const QVariant found = m_call.make(entry.name, entry.value.toList());
        compareValues(frame.line, QStringLiteral("result"),
                      withPlainNumbers(recordedvalue::toJson(entry.result)),
                      withPlainNumbers(recordedvalue::toJson(found)));
    } else if (entry.kind == Kind::Connection) {
        m_plugin.PluginServerConnected();
    } else if (entry.kind == Kind::Answered) {
        answer(*node.line);
    } else {
        m_plugin.EventProcessor(entry.name, 0, 0, 0, entry.value, entry.relayPath);
    }
    skipTo(frame, frame.expected.size());
    m_frame = frame.outer;
}

void Player::answer(const Recording::Line &line)
{
    const TrafficEntry &entry = line.entry;
    if (!m_sent.contains(entry.request)) {
        differ(line.number, QStringLiteral("a command to answer"),
               QStringLiteral("%1 was not sent").arg(entry.name));
        return;
    }
    m_plugin.CommandProcessor(entry.name, entry.value, m_contexts.value(entry.request), entry.code,
                              QString(), false, entry.relayPath);
}

/// Compares what the plug-in just did with the next recorded thing of that kind and name; gives
/// that, or null when there is none.
const TrafficEntry *Player::compare(const TrafficEntry &found, void *context)
{
    if (!m_frame)
        return nullptr;
    Frame &frame = *m_frame;
    const auto begin = frame.expected.cbegin();
    const auto match =
        std::find_if(begin + static_cast<std::ptrdiff_t>(frame.next), frame.expected.cend(),
                     [&](const Node &node) { return isSameThing(node.entry(), found); });
    if (match == frame.expected.cend()) {
        differ(frame.line, QStringLiteral("nothing more like it"), describe(found));
        return nullptr;
    }
    skipTo(frame, static_cast<size_t>(match - begin));

    ++m_result.outputs;
    const Recording::Line &line = *frame.take().line;
    compareValues(line.number,
                  found.kind == Kind::Signal ? QStringLiteral("arguments")
                                             : QStringLiteral("payload"),
                  recordedvalue::toJson(line.entry.value), recordedvalue::toJson(found.value));
    if (found.kind == Kind::Sent) {
        compareContexts(frame, line, context);
        m_contexts.insert(line.entry.request, context);
        m_sent.insert(line.entry.request);
    }
    // What was done about it at once: a call from a slot, an answer from inside the sending.
    while (!frame.atEnd() && !frame.expected[frame.next].entry().isOutput())
        give(frame.take());
    return &line.entry;
}

/// Outputs before the position have not come; inputs that none of them caused are given now.
void Player::skipTo(Frame &frame, size_t position)
{
    while (frame.next < position) {
        const Node &node = frame.take();
        if (node.entry().isOutput())
            differ(node.line->number, describe(node.entry()), QStringLiteral("nothing"));
        else
            give(node);
    }
}

void Player::compareValues(int line, const QString &what, const QJsonValue &expected,
                           const QJsonValue &found)
{
    if (expected == found)
        return;
    const ValueDifference difference = firstDifference(expected, found);
    differ(line, placeOf(what, difference.path, difference.expected),
           recordedvalue::brief(difference.found));
}

/// Pointers change from run to run. What counts is which commands of one input share one.
void Player::compareContexts(Frame &frame, const Recording::Line &line, const void *context)
{
    const int number = line.entry.context;
    if ((number == 0) != (context == nullptr)) {
        differ(line.number, number ? QStringLiteral("a context") : QStringLiteral("no context"),
               context ? QStringLiteral("a context") : QStringLiteral("none"));
        return;
    }
    if (number == 0)
        return;
    const bool known = frame.contexts.contains(number);
    const int sharer = frame.contexts.key(context, 0);
    if (known && frame.contexts.value(number) != context)
        differ(line.number, QStringLiteral("the context of an earlier command"),
               QStringLiteral("another one"));
    else if (!known && sharer != 0)
        differ(line.number, QStringLiteral("a context of its own"),
               QStringLiteral("that of an earlier command"));
    frame.contexts.insert(number, context);
}

void Player::differ(int line, const QString &expected, const QString &found)
{
    m_result.differences.append({line, expected, found});
}

QStringList notesOn(const Recording::Header &header)
{
    const Recording::Header own = Recording::Header::ofThisProcess();
    QStringList notes;
    const auto compareTexts = [&](const QString &what, const QString &then, const QString &now) {
        if (then != now)
            notes.append(QStringLiteral("recorded with %1 %2, replayed with %3: texts of times may "
                                        "differ")
                             .arg(what, then, now));
    };
    compareTexts(QStringLiteral("time zone"), header.timeZone, own.timeZone);
    compareTexts(QStringLiteral("locale"), header.locale, own.locale);
    if (!header.complete)
        notes.append(QStringLiteral("the recording's beginning or a large payload is missing: the "
                                    "plug-in does not know what it knew then"));
    return notes;
}

} // namespace

Result run(const QString &file, PluginBase &plugin)
{
    Result result;
    result.file = file;
    const std::optional<Recording> recording = Recording::read(file, &result.error);
    if (!recording)
        return result;
    result.notes = notesOn(recording->header);
    result.badLines = recording->badLines;
    Player(*recording, plugin, result).play();
    return result;
}

int Result::exitCode() const
{
    if (!error.isEmpty())
        return 2;
    return differences.isEmpty() && badLines.isEmpty() && !isEmpty() ? 0 : 1;
}

QStringList Result::report() const
{
    if (!error.isEmpty())
        return {error};
    QStringList lines;
    for (const QString &note : notes)
        lines.append(QStringLiteral("%1: %2").arg(file, note));
    for (const Recording::BadLine &bad : badLines)
        lines.append(QStringLiteral("%1:%2: %3").arg(bad.file).arg(bad.number).arg(bad.reason));
    for (const Difference &difference : differences)
        lines.append(QStringLiteral("%1:%2: expected %3, found %4")
                         .arg(file)
                         .arg(difference.line)
                         .arg(difference.expected, difference.found));
    if (isEmpty())
        lines.append(
            QStringLiteral("%1: nothing was compared, as no line of it can be used").arg(file));
    lines.append(
        QStringLiteral("%1 inputs given, %2 outputs compared: %3 differences, %4 bad lines.")
            .arg(inputs)
            .arg(outputs)
            .arg(differences.size())
            .arg(badLines.size()));
    return lines;
}

} // namespace workbench::replay
