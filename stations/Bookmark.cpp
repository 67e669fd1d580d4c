#include "Bookmark.h"

#include "Payload.h"
#include "Protocol.h"

namespace stations {

namespace key = protocol::key;

namespace {

/// Keys of records. All records share these strings, so that a list stores each key once.
struct RecordKeys
{
    QString bookmarkID = key::BookmarkID;
    QString cameraID = key::CameraID;
    QString locationID = key::LocationID;
    QString start = key::StartTimestamp;
    QString end = key::EndTimestamp;
    QString description = key::Description;
    QString creator = key::Creator;
    QString group = key::Group;

    /// Copying a map takes a third of the time of inserting its entries.
    const QVariantMap emptyRecord{{bookmarkID, {}}, {cameraID, {}}, {locationID, {}},
                                  {start, {}},      {end, {}},      {description, {}},
                                  {creator, {}},    {group, {}}};
};

QString defectOfText(const QString &text, qsizetype maxLength, QLatin1String what)
{
    if (text.size() > maxLength)
        return QStringLiteral("the %1 is longer than %2 characters").arg(what).arg(maxLength);
    if (text.contains(QChar(QChar::Null)))
        return QStringLiteral("the %1 contains a NUL character").arg(what);
    return QString();
}

} // namespace

std::optional<Bookmark> Bookmark::fromRecord(const QVariantMap &record)
{
    const std::optional<QString> cameraID = payload::text(record, key::CameraID);
    const std::optional<QString> locationID = payload::text(record, key::LocationID);
    const std::optional<qint64> start = payload::int64(record, key::StartTimestamp);
    const std::optional<qint64> end = payload::int64(record, key::EndTimestamp);
    const std::optional<QString> description = payload::text(record, key::Description);
    const std::optional<QString> creator = payload::text(record, key::Creator);
    const std::optional<QString> group = payload::text(record, key::Group);
    if (!cameraID || !locationID || !start || !end || !description || !creator || !group)
        return std::nullopt;

    const Bookmark bookmark{QString(), *cameraID,    *locationID, *start,
                            *end,      *description, *creator,    *group};
    if (!bookmark.defect().isEmpty())
        return std::nullopt;
    return bookmark;
}

QVariantMap Bookmark::toRecord() const
{
    static const RecordKeys keys;
    QVariantMap record = keys.emptyRecord;
    record[keys.cameraID] = cameraID;
    record[keys.locationID] = locationID;
    record[keys.start] = start;
    record[keys.end] = end;
    record[keys.description] = description;
    record[keys.creator] = creator;
    record[keys.group] = group;
    if (bookmarkID.isEmpty())
        record.remove(keys.bookmarkID);
    else
        record[keys.bookmarkID] = bookmarkID;
    return record;
}

QString Bookmark::defect() const
{
    const struct
    {
        const QString &text;
        qsizetype maxLength;
        QLatin1String what;
    } texts[] = {
        {cameraID, MaxLabelLength, QLatin1String("camera")},
        {locationID, MaxLabelLength, QLatin1String("location")},
        {description, MaxDescriptionLength, QLatin1String("description")},
        {creator, MaxLabelLength, QLatin1String("creator")},
        {group, MaxLabelLength, QLatin1String("group")},
    };
    for (const auto &[text, maxLength, what] : texts) {
        QString defect = defectOfText(text, maxLength, what);
        if (!defect.isEmpty())
            return defect;
    }
    return end < start ? QStringLiteral("the end is before the start") : QString();
}

} // namespace stations
