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

using Text = QString BookmarkRecord::*;
using Number = qint64 BookmarkRecord::*;

/// A member of a record, or none. Call value() only if there is one.
struct Member
{
    Text text = nullptr;
    Number number = nullptr;

    constexpr Member() = default;
    constexpr Member(Text member)
        : text(member)
    {
    }
    constexpr Member(Number member)
        : number(member)
    {
    }

    QVariant value(const BookmarkRecord &record) const
    {
        return text ? QVariant(record.*text) : QVariant(record.*number);
    }
};

/// The keys of display records and of server records. Both are in ascending order, as in the maps,
/// so that one pass reads or writes all.
struct Field
{
    const QString &displayKey;
    Member member;
    const QString *serverKey; ///< null if the server does not send this field
};
const Field fields[] = {
    {displayKey::BookmarkID, &BookmarkRecord::bookmarkID, &serverKey::BookmarkID},
    {displayKey::CameraID, &BookmarkRecord::cameraID, &serverKey::CameraID},
    {displayKey::CameraName, &BookmarkRecord::cameraName, nullptr},
    {displayKey::Creator, &BookmarkRecord::creator, &serverKey::Creator},
    {displayKey::Description, &BookmarkRecord::description, &serverKey::Description},
    {displayKey::DisplayDate, &BookmarkRecord::date, nullptr},
    {displayKey::DisplayDateTime, &BookmarkRecord::dateTime, nullptr},
    {displayKey::DisplayTimeRange, &BookmarkRecord::timeRange, nullptr},
    {displayKey::EndTimestamp, &BookmarkRecord::end, &serverKey::EndTimestamp},
    {displayKey::Group, &BookmarkRecord::group, &serverKey::Group},
    {displayKey::LocationID, &BookmarkRecord::locationID, &serverKey::LocationID},
    {displayKey::RelayPath, &BookmarkRecord::relayPath, nullptr},
    {displayKey::StartTimestamp, &BookmarkRecord::start, &serverKey::StartTimestamp},
};

/// The roles of a timeline item, in the order in which they are set.
struct RoleMember
{
    int role;
    Member member;
    const char *name = nullptr; ///< null if the role belongs to the default set of the model
};
constexpr RoleMember roleMembers[] = {
    {TimeShiftBufferModel::ItemIdRole, &BookmarkRecord::bookmarkID},
    {TimeShiftBufferModel::ChannelIdRole, &BookmarkRecord::cameraID},
    {TimeShiftBufferModel::StartTimestampRole, &BookmarkRecord::start},
    {TimeShiftBufferModel::EndTimestampRole, &BookmarkRecord::end},
    // Further roles of the default set that bookmarks do not use.
    {Qt::UserRole + 6, {}},
    {Qt::UserRole + 7, {}},
    {Qt::UserRole + 9, {}},
    {Qt::UserRole + 13, &BookmarkRecord::bookmarkID, "bookmarkIDRole"},
    {Qt::UserRole + 14, &BookmarkRecord::cameraID, "cameraIDRole"},
    {Qt::UserRole + 15, &BookmarkRecord::relayPath, "relayPathRole"},
    {Qt::UserRole + 16, &BookmarkRecord::description, "descRole"},
    {Qt::UserRole + 17, &BookmarkRecord::creator, "creatorRole"},
    {Qt::UserRole + 18, &BookmarkRecord::group, "groupRole"},
    {Qt::UserRole + 19, &BookmarkRecord::cameraName, "cameraNameRole"},
    {Qt::UserRole + 20, &BookmarkRecord::date, "dispDateRole"},
    {Qt::UserRole + 21, &BookmarkRecord::dateTime, "dispDateTimeRole"},
    {Qt::UserRole + 22, &BookmarkRecord::locationID, "locationIDRole"},
    {Qt::UserRole + 23, &BookmarkRecord::timeRange, "dispTimeRangeRole"},
};

/// Makes QStandardItem's protected assignment callable; clone() leaks when memory is short. Never
/// instantiated: an item's virtual functions must not be in a library that may be unloaded.
struct CopiedItem : QStandardItem
{
    static void assign(QStandardItem &item, const QStandardItem &other)
    {
        using Assignment = QStandardItem &(QStandardItem::*)(const QStandardItem &);
        (item.*static_cast<Assignment>(&CopiedItem::operator=))(other);
    }
    using QStandardItem::operator=;
};

} // namespace

BookmarkRecord readServerRecord(const QVariantMap &serverRecord, CameraNames &names)
{
    BookmarkRecord record;
    auto entry = serverRecord.cbegin();
    for (const auto &[displayKey, member, serverKey] : fields) {
        if (!serverKey)
            continue;
        // Equality first: it is cheaper than the comparison by order, and nearly always true.
        while (entry != serverRecord.cend() && entry.key() != *serverKey &&
               entry.key() < *serverKey)
            ++entry;
        if (entry == serverRecord.cend() || entry.key() != *serverKey)
            continue;
        if (member.text)
            record.*member.text = entry->toString();
        else
            record.*member.number = entry->toLongLong();
        ++entry;
    }
    const Camera &camera = names.camera(record.cameraID);
    record.relayPath = names.relayPath();
    record.cameraKey = camera.key;
    record.cameraName = camera.qualifiedName;
    return record;
}

BookmarkRecord makeRecord(const QVariantMap &serverRecord, CameraNames &names,
                          TimeFormatter &formatter)
{
    BookmarkRecord record = readServerRecord(serverRecord, names);
    formatter.format(record);
    return record;
}

QVariantMap toDisplayMap(const BookmarkRecord &record)
{
    // Copying a map takes a third of the time of inserting its entries.
    static const QVariantMap mapTemplate = [] {
        QVariantMap map;
        for (const Field &field : fields)
            map.insert(field.displayKey, QVariant());
        return map;
    }();
    QVariantMap map = mapTemplate;
    auto entry = map.begin();
    for (const Field &field : fields) {
        Q_ASSERT(entry.key() == field.displayKey);
        *entry++ = field.member.value(record);
    }
    return map;
}

QString displayText(const BookmarkRecord &record, const QString &key)
{
    const auto field = std::find_if(std::begin(fields), std::end(fields),
                                    [&](const Field &f) { return f.displayKey == key; });
    return field == std::end(fields) ? QString() : field->member.value(record).toString();
}

void addTimelineRoles(QHash<int, QByteArray> &roleNames)
{
    for (const RoleMember &entry : roleMembers) {
        if (entry.name)
            roleNames.insert(entry.role, QByteArray(entry.name));
    }
}

std::unique_ptr<QStandardItem> toTimelineItem(const BookmarkRecord &record)
{
    // A new item reallocates with each further value; a copy allocates once.
    static const std::unique_ptr<QStandardItem> itemTemplate = [] {
        auto item = std::make_unique<QStandardItem>();
        for (const RoleMember &entry : roleMembers)
            item->setData(0, entry.role);
        return item;
    }();
    auto item = std::make_unique<QStandardItem>();
    CopiedItem::assign(*item, *itemTemplate);
    for (const RoleMember &entry : roleMembers) {
        if (entry.member.text || entry.member.number) // the template already has the zeros
            item->setData(entry.member.value(record), entry.role);
    }
    return item;
}

} // namespace tessaline
