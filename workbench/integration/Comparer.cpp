#include "Comparer.h"

#include "Alignment.h"
#include "CallTracker.h"
#include "EntryTree.h"
#include "RecordedValue.h"
#include "ValueDifference.h"

#include <QtCore/QHash>
#include <QtCore/QJsonArray>
#include <QtCore/QJsonObject>

namespace workbench {

namespace {

using Kind = TrafficEntry::Kind;
using alignment::Ids;

constexpr int HeaderLine = 1;

QString describe(const TrafficEntry &entry)
{
    QString text = nameOf(entry.kind) + QLatin1Char(' ') + entry.name;
    if (!entry.relayPath.isEmpty())
        text += (entry.kind == Kind::Sent ? QLatin1String(" to ") : QLatin1String(" from ")) +
                entry.relayPath;
    return text;
}

QString valueNameOf(const TrafficEntry &entry)
{
    switch (entry.kind) {
    case Kind::Call:
    case Kind::Signal:
        return QStringLiteral("arguments");
    case Kind::Answered:
        return QStringLiteral("result");
    default:
        return QStringLiteral("payload");
    }
}

QString outcomeOf(const TrafficEntry &command)
{
    return command.accepted ? QStringLiteral("accepted") : QStringLiteral("rejected");
}

int lastLineIn(const EntryNode &node)
{
    return node.inner.empty() ? node.line->number : lastLineIn(node.inner.back());
}

size_t thingOf(const TrafficEntry &entry)
{
    return qHashMulti(0, static_cast<int>(entry.kind), entry.name, entry.relayPath);
}

size_t contentOf(const TrafficEntry &entry)
{
    return qHashMulti(thingOf(entry), entry.code, recordedvalue::toJson(entry.value));
}

template <typename IdFunction>
Ids idsOf(const EntryTree &entries, const IdFunction &idOf)
{
    Ids ids;
    ids.reserve(entries.size());
    for (const EntryNode &node : entries)
        ids.push_back(idOf(node.entry()));
    return ids;
}

std::vector<alignment::Pair> align(const EntryTree &expected, const EntryTree &found)
{
    const Ids left = idsOf(expected, thingOf);
    const Ids right = idsOf(found, thingOf);
    // Most lists are equal, and computing the contents is slow.
    if (left == right)
        return alignment::align(left, left, right, right);
    return alignment::align(left, idsOf(expected, contentOf), right, idsOf(found, contentOf));
}

/// Assigns the entries to calls.
class Calls
{
public:
    explicit Calls(const QList<Recording::Line> &lines)
        : m_first(lines.constData())
    {
        CallTracker tracker;
        for (const Recording::Line &line : lines) {
            TrafficEntry entry = line.entry;
            tracker.add(entry);
            m_numbers.push_back(entry.call);
        }
    }

    int of(const EntryNode &node) const
    {
        return m_numbers[static_cast<size_t>(node.line - m_first)];
    }

private:
    const Recording::Line *m_first;
    std::vector<int> m_numbers;
};

/// Compares two sessions once, in the order of their entries.
class Comparer
{
public:
    Comparer(const QList<Recording::Line> &expected, const QList<Recording::Line> &found,
             Comparison &comparison)
        : m_comparison(comparison)
        , m_expectedCalls(expected)
        , m_foundCalls(found)
        , m_expectedTree(treeOf(expected))
        , m_foundTree(treeOf(found))
    {
    }

    void compare() { compareLists(m_expectedTree, m_foundTree, {HeaderLine, 0, 0, 0}); }

private:
    /// The entry that a difference concerns.
    struct Place
    {
        int line = 0;
        int otherLine = 0;
        int call = 0; ///< number in the first recording; negative: exists only in the second one
        int outermost = 0; ///< call of the enclosing entry at depth 0; 0: none
    };
    /// Maps contexts of the first recording to those of the second, inside one input.
    using Contexts = QHash<int, int>;

    void compareLists(const EntryTree &expected, const EntryTree &found, const Place &outer);
    void comparePair(const EntryNode &expected, const EntryNode &found, const Place &place,
                     Contexts &contexts);
    void compareValues(const Place &place, const QString &name, const QVariant &expected,
                       const QVariant &found, bool plainNumbers = false);
    void compareContexts(const Place &place, int expected, int found, Contexts &contexts);
    void addMissing(const EntryNode &node, const Place &outer);
    void addAdditional(const EntryNode &node, const Place &outer);
    void add(const Place &place, const QString &expected, const QString &found);
    Place placeOf(const EntryNode *expected, const EntryNode *found, const Place &outer) const;

    Comparison &m_comparison;
    const Calls m_expectedCalls;
    const Calls m_foundCalls;
    const EntryTree m_expectedTree;
    const EntryTree m_foundTree;
    QHash<int, int> m_callOfFound; ///< maps calls of the second recording to those of the first
    QHash<int, int> m_causes;      ///< index of the first difference of each call
};

/// Returns the place of an entry.
/// @param expected,found the entry in the first and second recording; one may be null
/// @param outer          the place of the enclosing entry
Comparer::Place Comparer::placeOf(const EntryNode *expected, const EntryNode *found,
                                  const Place &outer) const
{
    Place place = outer;
    if (expected)
        place.line = expected->line->number;
    place.otherLine = found ? found->line->number : 0;
    if (expected) {
        place.call = m_expectedCalls.of(*expected);
    } else {
        const int call = m_foundCalls.of(*found);
        place.call = m_callOfFound.value(call, -call);
    }
    if (outer.outermost == 0)
        place.outermost = place.call;
    return place;
}

void Comparer::compareLists(const EntryTree &expected, const EntryTree &found, const Place &outer)
{
    Contexts contexts;
    Place before = outer; // the line is that of the entry before
    const std::vector<alignment::Pair> pairs = align(expected, found);
    for (const alignment::Pair &pair : pairs) {
        const EntryNode *const left = pair.left ? &expected[*pair.left] : nullptr;
        const EntryNode *const right = pair.right ? &found[*pair.right] : nullptr;
        if (left && right) {
            m_callOfFound.insert(m_foundCalls.of(*right), m_expectedCalls.of(*left));
            comparePair(*left, *right, placeOf(left, right, outer), contexts);
        } else if (left) {
            addMissing(*left, outer);
        } else {
            addAdditional(*right, before);
        }
        if (left)
            before.line = lastLineIn(*left);
    }
}

void Comparer::comparePair(const EntryNode &expected, const EntryNode &found, const Place &place,
                           Contexts &contexts)
{
    const TrafficEntry &left = expected.entry();
    const TrafficEntry &right = found.entry();
    ++(left.isOutput() ? m_comparison.outputs : m_comparison.inputs);
    const bool isReplayed = !left.isOutput() && m_comparison.otherFile.isEmpty();
    const bool isOmitted = left.omitted > 0 || right.omitted > 0;
    if (!isReplayed && !isOmitted) // a replay gives the recorded value
        compareValues(place, valueNameOf(left), left.value, right.value);
    compareValues(place, QStringLiteral("result"), left.result, right.result, true);
    if (left.code != right.code)
        add(place, QStringLiteral("code %1").arg(left.code), right.code);
    if (left.accepted != right.accepted)
        add(place, outcomeOf(left), outcomeOf(right));
    if (left.kind == Kind::Sent)
        compareContexts(place, left.context, right.context, contexts);
    compareLists(expected.inner, found.inner, place);
}

void Comparer::compareValues(const Place &place, const QString &name, const QVariant &expected,
                             const QVariant &found, bool plainNumbers)
{
    const auto toJson = [&](const QVariant &value) {
        const QJsonValue json = recordedvalue::toJson(value);
        return plainNumbers ? withPlainNumbers(json) : json;
    };
    const QJsonValue left = toJson(expected);
    const QJsonValue right = toJson(found);
    if (left == right)
        return;
    const ValueDifference difference = firstDifference(left, right);
    add(place,
        QStringLiteral("%1%2 is %3")
            .arg(name, difference.path, recordedvalue::brief(difference.expected)),
        recordedvalue::brief(difference.found));
}

/// Pointers differ in each run, so this compares only which commands of one input share a context.
void Comparer::compareContexts(const Place &place, int expected, int found, Contexts &contexts)
{
    if ((expected == 0) != (found == 0)) {
        add(place, expected ? QStringLiteral("a context") : QStringLiteral("no context"),
            found ? QStringLiteral("a context") : QStringLiteral("none"));
        return;
    }
    if (expected == 0)
        return;
    const bool known = contexts.contains(expected);
    const int sharer = contexts.key(found, 0);
    if (known && contexts.value(expected) != found)
        add(place, QStringLiteral("the context of an earlier command"),
            QStringLiteral("another one"));
    else if (!known && sharer != 0)
        add(place, QStringLiteral("a context of its own"),
            QStringLiteral("that of an earlier command"));
    contexts.insert(expected, found);
}

void Comparer::addMissing(const EntryNode &node, const Place &outer)
{
    const Place place = placeOf(&node, nullptr, outer);
    add(place, describe(node.entry()), QStringLiteral("nothing"));
    for (const EntryNode &inner : node.inner)
        addMissing(inner, place);
}

void Comparer::addAdditional(const EntryNode &node, const Place &outer)
{
    const Place place = placeOf(nullptr, &node, outer);
    add(place, QStringLiteral("nothing else after this line"), describe(node.entry()));
    for (const EntryNode &inner : node.inner)
        addAdditional(inner, place);
}

void Comparer::add(const Place &place, const QString &expected, const QString &found)
{
    const int cause = m_causes.value(place.call, m_causes.value(place.outermost, -1));
    const int first = cause < 0 ? static_cast<int>(m_comparison.differences.size()) : cause;
    m_comparison.add({place.line, place.otherLine, expected, found, cause});
    m_causes.insert(place.call, first);
    m_causes.insert(place.outermost, first);
}

} // namespace

void compareEntries(const QList<Recording::Line> &expected, const QList<Recording::Line> &found,
                    Comparison *comparison)
{
    Comparer(expected, found, *comparison).compare();
}

QStringList notesOn(const Recording::Header &expected, const Recording::Header &found)
{
    QStringList notes;
    const auto compareTexts = [&](const QString &name, const QString &left, const QString &right) {
        if (left != right)
            notes.append(QStringLiteral("recorded with %1 %2, compared with %3: texts of times may "
                                        "differ")
                             .arg(name, left, right));
    };
    compareTexts(QStringLiteral("time zone"), expected.timeZone, found.timeZone);
    compareTexts(QStringLiteral("locale"), expected.locale, found.locale);
    return notes;
}

Comparison compareRecordings(const Recording &expected, const Recording &found)
{
    Comparison comparison;
    comparison.file = expected.file;
    comparison.otherFile = found.file;
    comparison.notes = notesOn(expected.header, found.header);
    comparison.badLines = expected.badLines + found.badLines;
    compareEntries(expected.lines, found.lines, &comparison);
    return comparison;
}

Comparison compareRecordings(const QString &file, const QString &otherFile)
{
    Comparison comparison;
    comparison.file = file;
    comparison.otherFile = otherFile;
    const auto expected = Recording::read(file, &comparison.error);
    const auto found = expected ? Recording::read(otherFile, &comparison.error) : std::nullopt;
    return found ? compareRecordings(*expected, *found) : comparison;
}

} // namespace workbench
