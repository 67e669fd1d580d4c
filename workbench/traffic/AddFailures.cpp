#include "AddFailures.h"

#include "stations/Protocol.h"

namespace workbench {

namespace {

/// Records of a command or its answer: one for AddBookmark, a list for AddBookmarks.
QVariantList recordsOf(const QVariant &value)
{
    return value.userType() == QMetaType::QVariantList ? value.toList() : QVariantList{value};
}

QString cameraKey(const QString &relayPath, const QVariant &record)
{
    const QString cameraID = record.toMap().value(protocol::key::CameraID).toString();
    return relayPath.isEmpty() ? cameraID : relayPath + QLatin1Char('/') + cameraID;
}

} // namespace

void AddFailures::noteTraffic(const standin::Traffic &traffic)
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
        Command command = m_pending.take(traffic.request);
        const bool failed = traffic.resultCode != protocol::code::Success;
        if (!failed) {
            command.records = recordsOf(traffic.value);
            command.records.removeIf([](const QVariant &record) {
                return record.toMap().contains(protocol::key::BookmarkID);
            });
        }
        noteFailures(traffic.request, command, failed ? traffic.resultCode : QString());
    }
}

void AddFailures::noteFailures(quint64 request, const Command &command, const QString &code)
{
    for (const QVariant &record : command.records)
        m_failures[request].insert(cameraKey(command.relayPath, record), code);
}

QVariantMap AddFailures::after(quint64 request) const
{
    QVariantMap failures;
    for (auto it = m_failures.upperBound(request); it != m_failures.cend(); ++it)
        failures.insert(*it);
    return failures;
}

} // namespace workbench
