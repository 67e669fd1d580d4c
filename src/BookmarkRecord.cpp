#include "BookmarkRecord.h"

#include "CameraNames.h"
#include "Names.h"
#include "TimeFormatter.h"
#include "TimeShiftBufferModel.h"

#include <QtGui/QStandardItem>

#include <algorithm>
#include <iterator>
#include <utility>

namespace tessaline {

namespace {

/// One field of a record: a text or a number, or neither, which reads as 0.
struct Field
{
    QString BookmarkRecord::*text = nullptr;
    qint64 BookmarkRecord::*number = nullptr;

    constexpr Field() = default;
    constexpr Field(QString BookmarkRecord::*member)
        : text(member)
    {
    }
    constexpr Field(qint64 BookmarkRecord::*member)
        : number(member)
    {
    }

    QVariant read(const BookmarkRecord &record) const
    {
        if (text)
            return QVariant(record.*text);
        return number ? QVariant(record.*number) : QVariant(0);
    }
    void write(BookmarkRecord &record, const QVariant &value) const
    {
        if (text)
            record.*text = value.toString();
        else
            record.*number = value.toLongLong();
    }
};

struct KeyedField
{
    const QString &key;
    Field field;
};

/// Both tables are in ascending order of the keys, as the maps are: one walk reads or writes all.
const KeyedField serverFields[] = {
    {serverKey::BookmarkID, &BookmarkRecord::bookmarkID},
    {serverKey::CameraID, &BookmarkRecord::cameraID},
    {serverKey::Creator, &BookmarkRecord::creator},
    {serverKey::Description, &BookmarkRecord::description},
    {serverKey::EndTimestamp, &BookmarkRecord::end},
    {serverKey::Group, &BookmarkRecord::group},
    {serverKey::LocationID, &BookmarkRecord::locationID},
    {serverKey::StartTimestamp, &BookmarkRecord::start},
};

const KeyedField displayFields[] = {
    {displayKey::BookmarkID, &BookmarkRecord::bookmarkID},
    {displayKey::CameraID, &BookmarkRecord::cameraID},
    {displayKey::CameraName, &BookmarkRecord::cameraName},
    {displayKey::Creator, &BookmarkRecord::creator},
    {displayKey::Description, &BookmarkRecord::description},
    {displayKey::DisplayDate, &BookmarkRecord::date},
    {displayKey::DisplayDateTime, &BookmarkRecord::dateTime},
    {displayKey::DisplayTimeRange, &BookmarkRecord::timeRange},
    {displayKey::EndTimestamp, &BookmarkRecord::end},
    {displayKey::Group, &BookmarkRecord::group},
    {displayKey::LocationID, &BookmarkRecord::locationID},
    {displayKey::RelayPath, &BookmarkRecord::relayPath},
    {displayKey::StartTimestamp, &BookmarkRecord::start},
};

template <typename Table>
bool isInKeyOrder(const Table &table)
{
    return std::is_sorted(
        std::begin(table), std::end(table),
        [](const KeyedField &left, const KeyedField &right) { return left.key < right.key; });
}

/// In the order in which an item gets its values.
constexpr struct
{
    int role;
    Field field;
} timelineFields[] = {
    {TimeShiftBufferModel::ItemIdRole, &BookmarkRecord::bookmarkID},
    {TimeShiftBufferModel::ChannelIdRole, &BookmarkRecord::cameraID},
    {TimeShiftBufferModel::StartTimestampRole, &BookmarkRecord::start},
    {TimeShiftBufferModel::EndTimestampRole, &BookmarkRecord::end},
    // The default set has more roles; they mean nothing for bookmarks and hold 0.
    {Qt::UserRole + 6, {}},
    {Qt::UserRole + 7, {}},
    {Qt::UserRole + 9, {}},
    {BookmarkIdRole, &BookmarkRecord::bookmarkID},
    {CameraIdRole, &BookmarkRecord::cameraID},
    {RelayPathRole, &BookmarkRecord::relayPath},
    {DescRole, &BookmarkRecord::description},
    {CreatorRole, &BookmarkRecord::creator},
    {GroupRole, &BookmarkRecord::group},
    {CameraNameRole, &BookmarkRecord::cameraName},
    {DispDateRole, &BookmarkRecord::date},
    {DispDateTimeRole, &BookmarkRecord::dateTime},
    {LocationIdRole, &BookmarkRecord::locationID},
    {DispTimeRangeRole, &BookmarkRecord::timeRange},
};

/// Copying a map takes a third of the time of inserting its entries.
QVariantMap displayMapTemplate()
{
    Q_ASSERT(isInKeyOrder(displayFields));
    QVariantMap map;
    for (const KeyedField &entry : displayFields)
        map.insert(entry.key, QVariant());
    return map;
}

/// A new item moves its values each time that it gets one more; a copy has room for all.
std::unique_ptr<QStandardItem> timelineItemTemplate()
{
    auto item = std::make_unique<QStandardItem>();
    for (const auto &entry : timelineFields)
        item->setData(0, entry.role);
    return item;
}

/// Makes the protected assignment of QStandardItem callable. No item is of this class: its virtual
/// functions would vanish with the library. QStandardItem::clone() leaks when memory is short.
struct CopiedItem : QStandardItem
{
    using QStandardItem::operator=;

    static void assign(QStandardItem &item, const QStandardItem &other)
    {
        using Assignment = QStandardItem &(QStandardItem::*)(const QStandardItem &);
        (item.*static_cast<Assignment>(&CopiedItem::operator=))(other);
    }
};

} // namespace

BookmarkRecord readServerRecord(const QVariantMap &serverRecord)
{
    Q_ASSERT(isInKeyOrder(serverFields));
    BookmarkRecord record;
    auto entry = serverRecord.cbegin();
    for (const auto &[key, field] : serverFields) {
        // Equality first: it is cheaper than the order, and nearly always true.
        bool isFound = false;
        while (entry != serverRecord.cend() && !(isFound = entry.key() == key) && entry.key() < key)
            ++entry;
        if (isFound)
            field.write(record, *entry);
    }
    return record;
}

BookmarkRecord makeRecord(const QVariantMap &serverRecord, CameraNames &names,
                          TimeFormatter &formatter)
{
    BookmarkRecord record = readServerRecord(serverRecord);
    record.relayPath = names.relayPath();
    record.cameraName = names.qualifiedName(record.cameraID);
    TimeFormatter::Texts texts = formatter.format(record.start, record.end);
    record.date = std::move(texts.date);
    record.dateTime = std::move(texts.dateTime);
    record.timeRange = std::move(texts.timeRange);
    return record;
}

QVariantMap toDisplayMap(const BookmarkRecord &record)
{
    static const QVariantMap mapTemplate = displayMapTemplate();
    QVariantMap map = mapTemplate;
    auto value = map.begin();
    for (const KeyedField &entry : displayFields)
        *value++ = entry.field.read(record);
    return map;
}

std::unique_ptr<QStandardItem> toTimelineItem(const BookmarkRecord &record)
{
    static const std::unique_ptr<QStandardItem> itemTemplate = timelineItemTemplate();
    auto item = std::make_unique<QStandardItem>();
    CopiedItem::assign(*item, *itemTemplate);
    for (const auto &entry : timelineFields)
        item->setData(entry.field.read(record), entry.role);
    return item;
}

} // namespace tessaline
