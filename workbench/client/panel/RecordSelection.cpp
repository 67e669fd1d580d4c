#include "RecordSelection.h"

namespace workbench {

RecordSelection::Key RecordSelection::keyOf(const QVariantMap &record)
{
    return {record.value(QStringLiteral("relayPath")).toString(),
            record.value(QStringLiteral("bookmarkID")).toString()};
}

QVariantList RecordSelection::records() const
{
    QVariantList list;
    for (const QVariantMap &record : m_records)
        list.append(record);
    return list;
}

void RecordSelection::setRecords(const QVariantList &records)
{
    m_records.clear();
    add(records);
}

void RecordSelection::add(const QVariantList &records)
{
    for (const QVariant &record : records) {
        const QVariantMap map = record.toMap();
        m_records.insert(keyOf(map), map);
    }
    Q_EMIT changed();
}

void RecordSelection::remove(const QVariantList &records)
{
    for (const QVariant &record : records)
        m_records.remove(keyOf(record.toMap()));
    Q_EMIT changed();
}

void RecordSelection::toggle(const QVariantMap &record)
{
    if (contains(record))
        remove({record});
    else
        add({record});
}

void RecordSelection::update(const QVariantMap &record)
{
    const auto found = m_records.find(keyOf(record));
    if (found != m_records.end())
        *found = record;
}

} // namespace workbench
