#include "Bookmark.h"

#include "Payload.h"
#include "Protocol.h"

#include <algorithm>
#include <iterator>

namespace stations {

namespace key = protocol::key;

namespace {

/// Returns a record without values. All records share its keys, so that a list stores each key
/// once. Copying a map takes a third of the time of inserting its entries.
const QVariantMap &emptyRecord()
{
    static const QVariantMap record{{key::BookmarkID, {}},   {key::CameraID, {}},
                                    {key::LocationID, {}},   {key::StartTimestamp, {}},
                                    {key::EndTimestamp, {}}, {key::Description, {}},
                                    {key::Creator, {}},      {key::Group, {}}};
    return record;
}

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
    // In the order of the map's keys: eight lookups would take longer than the copy.
    const QVariant values[] = {bookmarkID, cameraID, creator,    description,
                               end,        group,    locationID, start};
    QVariantMap record = emptyRecord();
    std::copy(std::begin(values), std::end(values), record.begin());
    if (bookmarkID.isEmpty())
        record.erase(record.cbegin());
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
