#include "HostileValues.h"

#include <QtCore/QByteArray>
#include <QtCore/QDateTime>
#include <QtCore/QObject>
#include <QtCore/QUrl>
#include <QtCore/QUuid>

#include <limits>

namespace check {

using namespace Qt::StringLiterals;

namespace {

QVariant nestedLists(int depth)
{
    QVariant value = 1;
    for (int i = 0; i < depth; ++i)
        value = QVariantList{value};
    return value;
}

QVariant nestedMaps(int depth)
{
    QVariant value = u"bottom"_s;
    for (int i = 0; i < depth; ++i)
        value = QVariantMap{{u"Bookmarks"_s, value}};
    return value;
}

} // namespace

const std::vector<HostileValue> &hostileValues()
{
    constexpr int Depth = 3000;
    constexpr int Megabyte = 1 << 20;
    using Int64 = std::numeric_limits<qint64>;
    using Double = std::numeric_limits<double>;
    static const std::vector<HostileValue> values{
        {u"missing"_s, QVariant()},
        {u"null pointer"_s, QVariant::fromValue(nullptr)},
        {u"null text"_s, QString()},
        {u"empty text"_s, u""_s},
        {u"text"_s, u"x"_s},
        {u"number as text"_s, u"12"_s},
        {u"too large number as text"_s, u"99999999999999999999"_s},
        {u"true"_s, true},
        {u"zero"_s, 0},
        {u"minus one"_s, -1},
        {u"minimum of 64 bits"_s, Int64::min()},
        {u"maximum of 64 bits"_s, Int64::max()},
        {u"unsigned maximum"_s, std::numeric_limits<quint64>::max()},
        {u"NaN"_s, Double::quiet_NaN()},
        {u"infinity"_s, Double::infinity()},
        {u"minus infinity"_s, -Double::infinity()},
        {u"maximal double"_s, Double::max()},
        {u"fraction"_s, 0.5},
        {u"megabyte of text"_s, QString(Megabyte, u'm')},
        {u"megabyte of bytes"_s, QByteArray(Megabyte, 'b')},
        {u"lone high surrogate"_s, QString(QChar(0xd800))},
        {u"lone low surrogate"_s, u"a"_s + QChar(0xdfff) + u"b"_s},
        {u"embedded NUL"_s, u"a"_s + QChar(0) + u"b"_s},
        {u"placeholders"_s, u"%1 %2 %n %s %d"_s},
        {u"bytes that are not UTF-8"_s, QByteArray("\xff\xfe\x00\x80", 4)},
        {u"date and time"_s, QDateTime()},
        {u"URL"_s, QUrl(u"file:///x"_s)},
        {u"identifier"_s, QUuid()},
        {u"object"_s, QVariant::fromValue<QObject *>(nullptr)},
        {u"empty list"_s, QVariantList()},
        {u"list of invalid values"_s, QVariantList(3)},
        {u"list of texts"_s, QStringList{u"a"_s, QString()}},
        {u"list of mixed values"_s, QVariantList{1, u"x"_s, QVariantMap(), QVariantList{2}}},
        {u"empty map"_s, QVariantMap()},
        {u"map of other keys"_s, QVariantMap{{QString(), 1}, {u"bookmarks"_s, u"x"_s}}},
        {u"hash"_s, QVariantHash{{u"Bookmarks"_s, QVariantList{QVariantHash()}}}},
        {u"lists in lists"_s, nestedLists(Depth)},
        {u"maps in maps"_s, nestedMaps(Depth)},
    };
    return values;
}

QVariantMap withValue(QVariantMap map, const QString &key, const HostileValue &hostile)
{
    if (hostile.value.isValid())
        map.insert(key, hostile.value);
    else
        map.remove(key);
    return map;
}

} // namespace check
