#include "RecordedValue.h"

#include <QtCore/QDataStream>
#include <QtCore/QIODevice>
#include <QtCore/QJsonArray>
#include <QtCore/QJsonDocument>
#include <QtCore/QJsonObject>

#include <cmath>

namespace workbench::recordedvalue {

namespace {

const QLatin1String TypeKey("$type");
const QLatin1String ValueKey("value");
const QLatin1String EntriesKey("entries");
const QLatin1String Utf16Key("utf16");
const QLatin1String StreamKey("stream");

constexpr int MaxDepth = 300; // Qt's JSON parser limits the depth; a level takes up to three
constexpr qint64 MaxExact = qint64(1) << 53; // JSON readers may round larger numbers

QJsonObject tagged(const char *type)
{
    return {{TypeKey, QLatin1String(type)}};
}

QJsonObject tagged(const char *type, const QJsonValue &value)
{
    return {{TypeKey, QLatin1String(type)}, {ValueKey, value}};
}

QJsonValue toJson(const QVariant &value, int depth);

QJsonValue textToJson(const QString &text)
{
    if (text.isNull())
        return tagged("QString");
    if (text.isValidUtf16())
        return text;
    QJsonArray units; // an unpaired surrogate has no UTF-8 form
    for (const QChar unit : text)
        units.append(unit.unicode());
    return QJsonObject{{TypeKey, QLatin1String("QString")}, {Utf16Key, units}};
}

template <typename Map>
QJsonValue mapToJson(const Map &map, int depth)
{
    QJsonObject object;
    QJsonArray entries;
    bool plain = std::is_same_v<Map, QVariantMap>;
    for (auto it = map.cbegin(); it != map.cend(); ++it) {
        plain = plain && !it.key().startsWith(QLatin1Char('$')) && it.key().isValidUtf16();
        const QJsonValue value = toJson(*it, depth + 1);
        object.insert(it.key(), value);
        entries.append(QJsonArray{textToJson(it.key()), value});
    }
    if (plain)
        return object;
    const char *const type = QMetaType::fromType<Map>().name();
    return QJsonObject{{TypeKey, QLatin1String(type)}, {EntriesKey, entries}};
}

template <typename List>
QJsonArray listToJson(const List &list, int depth)
{
    QJsonArray array;
    for (const auto &element : list)
        array.append(toJson(QVariant(element), depth + 1));
    return array;
}

QJsonValue integerToJson(const QVariant &value)
{
    const qint64 number = value.toLongLong(); // negative for large unsigned values
    const bool exact = number >= -MaxExact && number <= MaxExact;
    if (value.typeId() == QMetaType::LongLong && exact)
        return number;
    return tagged(value.typeName(), exact ? QJsonValue(number) : QJsonValue(value.toString()));
}

QJsonValue doubleToJson(const QVariant &value)
{
    const double number = value.toDouble();
    const bool plain = std::isfinite(number) && !(number == 0 && std::signbit(number));
    return tagged(value.typeName(), plain ? QJsonValue(number) : QJsonValue(value.toString()));
}

/// Writes a value of any other type in Qt's stream format.
QJsonValue streamToJson(const QVariant &value)
{
    QByteArray bytes;
    QDataStream stream(&bytes, QIODevice::WriteOnly);
    stream.setVersion(QDataStream::Qt_6_4);
    if (!value.metaType().save(stream, value.constData()))
        return tagged("lost", QLatin1String(value.typeName()));
    return QJsonObject{{TypeKey, QLatin1String(value.typeName())},
                       {StreamKey, QString::fromLatin1(bytes.toBase64())},
                       {QStringLiteral("text"), value.toString()}};
}

QJsonValue toJson(const QVariant &value, int depth)
{
    if (depth > MaxDepth)
        return tagged("lost", QLatin1String(value.typeName()));
    switch (value.typeId()) {
    case QMetaType::UnknownType:
        return tagged("invalid");
    case QMetaType::Nullptr:
        return QJsonValue::Null;
    case QMetaType::Bool:
        return value.toBool();
    case QMetaType::QString:
        return textToJson(value.toString());
    case QMetaType::QVariantMap:
        return mapToJson(value.toMap(), depth);
    case QMetaType::QVariantHash:
        return mapToJson(value.toHash(), depth);
    case QMetaType::QVariantList:
        return listToJson(value.toList(), depth);
    case QMetaType::QStringList:
        return tagged("QStringList", listToJson(value.toStringList(), depth));
    case QMetaType::QByteArray: // each byte becomes a Latin-1 character
        return value.toByteArray().isNull()
                   ? tagged("QByteArray")
                   : tagged("QByteArray", QString::fromLatin1(value.toByteArray()));
    case QMetaType::LongLong:
    case QMetaType::ULongLong:
    case QMetaType::Int:
    case QMetaType::UInt:
    case QMetaType::Short:
    case QMetaType::UShort:
    case QMetaType::UChar:
        return integerToJson(value);
    case QMetaType::Double:
    case QMetaType::Float:
        return doubleToJson(value);
    default:
        return streamToJson(value);
    }
}

std::optional<QVariantList> listFromJson(const QJsonValue &json)
{
    if (!json.isArray())
        return std::nullopt;
    QVariantList list;
    const QJsonArray array = json.toArray();
    list.reserve(array.size());
    for (const auto &element : array) {
        const std::optional<QVariant> value = fromJson(element);
        if (!value)
            return std::nullopt;
        list.append(*value);
    }
    return list;
}

template <typename Map>
std::optional<QVariant> entriesFromJson(const QJsonArray &entries)
{
    Map map;
    for (const auto &entry : entries) {
        const std::optional<QVariantList> pair = listFromJson(entry);
        if (!pair || pair->size() != 2)
            return std::nullopt;
        map.insert(pair->at(0).toString(), pair->at(1));
    }
    return map;
}

QString textFromUnits(const QJsonArray &units)
{
    QString text;
    for (const auto &unit : units)
        text.append(QChar(static_cast<char16_t>(unit.toInt())));
    return text;
}

std::optional<QVariant> streamFromJson(QMetaType type, const QString &base64)
{
    QVariant value(type);
    QDataStream stream(QByteArray::fromBase64(base64.toLatin1()));
    stream.setVersion(QDataStream::Qt_6_4);
    if (!type.isValid() || !type.load(stream, value.data()))
        return std::nullopt;
    return value;
}

std::optional<QVariant> taggedFromJson(const QJsonObject &object)
{
    const QString name = object.value(TypeKey).toString();
    const QJsonValue value = object.value(ValueKey);
    if (name == QLatin1String("invalid") || name == QLatin1String("lost"))
        return QVariant();

    const QMetaType type = QMetaType::fromName(name.toLatin1());
    if (object.contains(StreamKey))
        return streamFromJson(type, object.value(StreamKey).toString());
    if (object.contains(EntriesKey)) {
        const QJsonArray entries = object.value(EntriesKey).toArray();
        return type.id() == QMetaType::QVariantHash ? entriesFromJson<QVariantHash>(entries)
                                                    : entriesFromJson<QVariantMap>(entries);
    }
    switch (type.id()) {
    case QMetaType::UnknownType:
        return std::nullopt;
    case QMetaType::QString:
        return object.contains(Utf16Key) ? textFromUnits(object.value(Utf16Key).toArray())
                                         : QString();
    case QMetaType::QByteArray:
        return value.isString() ? value.toString().toLatin1() : QByteArray();
    case QMetaType::QStringList: {
        const std::optional<QVariantList> list = listFromJson(value);
        if (!list)
            return std::nullopt;
        return QVariant(*list).toStringList();
    }
    default: {
        QVariant number = value.toVariant();
        if (!number.convert(type))
            return std::nullopt;
        return number;
    }
    }
}

std::optional<QVariant> objectFromJson(const QJsonObject &object)
{
    if (object.contains(TypeKey))
        return taggedFromJson(object);
    QVariantMap map;
    for (auto it = object.constBegin(); it != object.constEnd(); ++it) {
        const std::optional<QVariant> value = fromJson(*it);
        if (!value)
            return std::nullopt;
        map.insert(it.key(), *value);
    }
    return map;
}

} // namespace

QJsonValue toJson(const QVariant &value)
{
    return toJson(value, 0);
}

std::optional<QVariant> fromJson(const QJsonValue &json)
{
    if (json.isObject())
        return objectFromJson(json.toObject());
    if (json.isArray()) {
        const std::optional<QVariantList> list = listFromJson(json);
        return list ? std::optional<QVariant>(*list) : std::nullopt;
    }
    // Qt's JSON parser returns a null text for an empty one.
    if (json.isString() && json.toString().isEmpty())
        return QVariant(QLatin1String(""));
    return json.toVariant();
}

QString brief(const QJsonValue &json)
{
    constexpr qsizetype length = 200;
    if (json.isUndefined())
        return QStringLiteral("nothing");
    // A JSON document must be an array or object: format an array and remove its brackets.
    const QByteArray list = QJsonDocument(QJsonArray{json}).toJson(QJsonDocument::Compact);
    const QString text = QString::fromUtf8(list.mid(1, list.size() - 2));
    return text.size() > length ? text.left(length) + QChar(0x2026) : text;
}

} // namespace workbench::recordedvalue
