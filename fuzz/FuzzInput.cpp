#include "FuzzInput.h"

#include "Names.h"

#include <limits>

using namespace tessaline;

int FuzzInput::number(int count)
{
    int result = 0;
    for (; count > 0 && m_data != m_end; --count)
        result = result << 8 | *m_data++;
    return result;
}

qint64 FuzzInput::integer()
{
    constexpr auto least = std::numeric_limits<qint64>::min();
    constexpr auto greatest = std::numeric_limits<qint64>::max();
    static const qint64 odd[] = {0, -1, least, greatest, 4'000'000'000'000, 1'600'000'000'000};
    const int choice = below(12);
    return choice < 6 ? odd[choice] : choice < 9 ? below(256) : qint64(number(2)) << 32 | number(3);
}

QString FuzzInput::text()
{
    static const QStringList names = [] {
        QStringList list{QString(),
                         heapString(""),
                         heapString("A"),
                         heapString("B"),
                         heapString("1"),
                         heapString("A/1"),
                         heapString("l"),
                         heapString("b"),
                         heapString("0"),
                         heapString("%1%s%n"),
                         heapString("2020/01/01 10:00:00"),
                         heapString("Europe/Berlin"),
                         QString(QChar(0xd800)),
                         QString(300, u'x')};
        for (const QString &key :
             {serverKey::BookmarkID, serverKey::CameraID, serverKey::LocationID,
              serverKey::StartTimestamp, serverKey::EndTimestamp, serverKey::Description,
              serverKey::Bookmarks, recycleKey::ReserveHour, displayKey::RelayPath,
              displayKey::DisplayDate, displayKey::DisplayTimeRange, displayKey::CameraName,
              filterKey::GroupKey, filterKey::NodeID, filterKey::Text, filterKey::PageNumber,
              filterKey::Ascending, filterKey::StartTimestamp, filterKey::EndTimestamp})
            list.append(key);
        return list;
    }();
    const int choice = below(256);
    if (choice < 240)
        return names.at(choice % names.size());
    QString text;
    for (int left = choice - 240; left > 0; --left)
        text.append(QChar(char16_t(number(2))));
    return text;
}

QVariantMap FuzzInput::map(int depth)
{
    QVariantMap map;
    for (int left = below(8); left > 0 && !isEmpty(); --left) {
        const QString key = text();
        map.insert(key, value(depth + 1));
    }
    return map;
}

QVariantList FuzzInput::list(int depth)
{
    QVariantList list;
    for (int left = below(8); left > 0 && !isEmpty(); --left)
        list.append(value(depth + 1));
    return list;
}

QVariant FuzzInput::value(int depth)
{
    switch (below(depth < 6 ? 12 : 6)) {
    case 1:
        return integer();
    case 2:
        return int(integer());
    case 3:
        return double(integer()) / below(3);
    case 4:
        return below(2) == 0;
    case 5:
        return text().toUtf8();
    case 6:
        return list(depth);
    case 7:
        return QStringList{text(), text()};
    case 8:
        return map(depth);
    case 9:
        return QVariant::fromValue<QObject *>(nullptr);
    case 10:
    case 11:
        return text();
    default:
        return {};
    }
}

QVariant FuzzInput::valueOf(QMetaType type)
{
    switch (type.id()) {
    case QMetaType::QString:
        return text();
    case QMetaType::QVariantList: {
        const QVariant records = answer();
        return records.typeId() == QMetaType::QVariantList ? records : QVariant(list(0));
    }
    case QMetaType::QVariantMap:
        return map(0);
    default:
        break;
    }
    QVariant number(integer());
    return number.convert(type) ? number : QVariant(type);
}

QVariant FuzzInput::answer()
{
    const int shape = below(5);
    if (shape == 0)
        return value();
    QVariantList records;
    for (int left = 1 + below(4); left > 0; --left) {
        records.append(QVariantMap{{serverKey::BookmarkID, text()},
                                   {serverKey::CameraID, text()},
                                   {displayKey::RelayPath, text()},
                                   {serverKey::Description, text()},
                                   {serverKey::LocationID, text()},
                                   {serverKey::StartTimestamp, integer()},
                                   {serverKey::EndTimestamp, integer()}});
    }
    if (shape == 1)
        return records.constFirst();
    return shape == 2 ? QVariant(records) : QVariant(QVariantMap{{serverKey::Bookmarks, records}});
}
