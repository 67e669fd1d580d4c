#include "AddOutcomes.h"

#include "Protocol.h"
#include "topology/CameraKey.h"

namespace workbench {

namespace {

/// Far more than one batch has commands; older ones are not asked for any more.
constexpr qsizetype MaxCommands = 10'000;

template <typename Outcome>
void dropOldest(QMap<quint64, Outcome> &outcomes)
{
    if (outcomes.size() > MaxCommands)
        outcomes.erase(outcomes.begin());
}

/// Records of a command or its answer: one for AddBookmark, a list for AddBookmarks.
QVariantList recordsOf(const QVariant &value)
{
    return value.userType() == QMetaType::QVariantList ? value.toList() : QVariantList{value};
}

QString cameraIDOf(const QVariant &record)
{
    return record.toMap().value(protocol::key::CameraID).toString();
}

} // namespace

void AddOutcomes::noteTraffic(const standin::Traffic &traffic)
{
    if (traffic.name != protocol::command::AddBookmark &&
        traffic.name != protocol::command::AddBookmarks)
        return;
    using Kind = standin::Traffic::Kind;
    if (traffic.kind == Kind::Sent) {
        const Command command{traffic.relayPath, recordsOf(traffic.value)};
        if (traffic.accepted)
            m_pending.insert(traffic.sequence, command);
        else
            noteFailures(traffic.sequence, command, QString());
    } else if (traffic.kind == Kind::Answered && m_pending.contains(traffic.request)) {
        noteAnswer(m_pending.take(traffic.request), traffic);
    }
}

void AddOutcomes::noteAnswer(const Command &command, const standin::Traffic &answer)
{
    if (answer.resultCode != protocol::code::Success) {
        noteFailures(answer.request, command, answer.resultCode);
        return;
    }
    Command failed = command;
    const QVariantList records = recordsOf(answer.value);
    for (const QVariant &record : records) {
        const QString bookmarkID = record.toMap().value(protocol::key::BookmarkID).toString();
        if (bookmarkID.isEmpty())
            continue;
        m_added[answer.request].append(command.relayPath + QLatin1Char('/') + bookmarkID);
        failed.records.removeIf(
            [&](const QVariant &wanted) { return cameraIDOf(wanted) == cameraIDOf(record); });
    }
    dropOldest(m_added);
    noteFailures(answer.request, failed, QString());
}

void AddOutcomes::noteFailures(quint64 request, const Command &command, const QString &code)
{
    for (const QVariant &record : command.records)
        m_failures[request].insert(standin::cameraKey(command.relayPath, cameraIDOf(record)), code);
    dropOldest(m_failures);
}

QVariantMap AddOutcomes::failuresAfter(quint64 request) const
{
    QVariantMap failures;
    for (auto it = m_failures.upperBound(request); it != m_failures.cend(); ++it)
        failures.insert(*it);
    return failures;
}

QStringList AddOutcomes::addedAfter(quint64 request) const
{
    QStringList added;
    for (auto it = m_added.upperBound(request); it != m_added.cend(); ++it)
        added += *it;
    return added;
}

} // namespace workbench
