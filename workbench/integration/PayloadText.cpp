#include "PayloadText.h"

#include <QtCore/QJsonArray>
#include <QtCore/QJsonDocument>
#include <QtCore/QJsonObject>
#include <QtCore/QLocale>

#include <algorithm>

namespace workbench::payloadtext {

namespace {

/// Returns the container inside a variant, without a copy.
template <typename Container>
const Container &inside(const QVariant &value)
{
    return *static_cast<const Container *>(value.constData());
}

void write(QString &out, const QVariant &value, qsizetype length);

template <typename List>
void writeList(QString &out, const QVariant &list, qsizetype length)
{
    out += QLatin1Char('[');
    bool first = true;
    for (const auto &element : inside<List>(list)) {
        if (out.size() > length)
            break;
        if (!std::exchange(first, false))
            out += QLatin1String(", ");
        write(out, element, length);
    }
    out += QLatin1Char(']');
}

template <typename Map>
void writeMap(QString &out, const QVariant &value, qsizetype length)
{
    const Map &map = inside<Map>(value);
    out += QLatin1Char('{');
    for (auto it = map.cbegin(); it != map.cend() && out.size() <= length; ++it) {
        if (it != map.cbegin())
            out += QLatin1String(", ");
        out += it.key() + QLatin1String(": ");
        write(out, *it, length);
    }
    out += QLatin1Char('}');
}

void write(QString &out, const QVariant &value, qsizetype length)
{
    switch (value.typeId()) {
    case QMetaType::UnknownType:
        out += QLatin1Char('-');
        break;
    case QMetaType::Nullptr:
        out += QLatin1String("null");
        break;
    case QMetaType::Double: // QML passes times and counts as doubles: show all digits
        out += QString::number(value.toDouble(), 'f', QLocale::FloatingPointShortest);
        break;
    case QMetaType::QString:
        out += QLatin1Char('"') + inside<QString>(value).left(length) + QLatin1Char('"');
        break;
    case QMetaType::QVariantMap:
        writeMap<QVariantMap>(out, value, length);
        break;
    case QMetaType::QVariantHash:
        writeMap<QVariantHash>(out, value, length);
        break;
    case QMetaType::QVariantList:
        writeList<QVariantList>(out, value, length);
        break;
    case QMetaType::QStringList:
        writeList<QStringList>(out, value, length);
        break;
    default: {
        const QString text = value.toString();
        if (value.canConvert<QObject *>())
            out += QLatin1String(value.value<QObject *>() ? "object" : "null");
        else
            out += QStringView(text).left(length);
    }
    }
}

bool search(const QVariant &value, const QString &text, int &valuesLeft);

bool search(const QString &value, const QString &text, int &valuesLeft)
{
    --valuesLeft;
    return value.contains(text, Qt::CaseInsensitive);
}

template <typename List>
bool searchList(const QVariant &list, const QString &text, int &valuesLeft)
{
    for (const auto &element : inside<List>(list)) {
        if (valuesLeft <= 0)
            return false;
        if (search(element, text, valuesLeft))
            return true;
    }
    return false;
}

template <typename Map>
bool searchMap(const QVariant &value, const QString &text, int &valuesLeft)
{
    const Map &map = inside<Map>(value);
    for (auto it = map.cbegin(); it != map.cend() && valuesLeft > 0; ++it) {
        if (it.key().contains(text, Qt::CaseInsensitive) || search(*it, text, valuesLeft))
            return true;
    }
    return false;
}

bool search(const QVariant &value, const QString &text, int &valuesLeft)
{
    --valuesLeft;
    switch (value.typeId()) {
    case QMetaType::QString:
        return inside<QString>(value).contains(text, Qt::CaseInsensitive);
    case QMetaType::QVariantMap:
        return searchMap<QVariantMap>(value, text, valuesLeft);
    case QMetaType::QVariantHash:
        return searchMap<QVariantHash>(value, text, valuesLeft);
    case QMetaType::QVariantList:
        return searchList<QVariantList>(value, text, valuesLeft);
    case QMetaType::QStringList:
        return searchList<QStringList>(value, text, valuesLeft);
    default:
        return value.toString().contains(text, Qt::CaseInsensitive);
    }
}

/// Estimates from the first elements, because the records of a list are alike, and counting all
/// records of a station would take longer than a frame.
qint64 countInList(const QVariant &value)
{
    constexpr qsizetype Counted = 100;
    const auto &list = inside<QVariantList>(value);
    const auto first = list.first(std::min(list.size(), Counted));
    qint64 count = 0;
    for (const QVariant &element : first)
        count += countValues(element);
    return first.isEmpty() ? 1 : 1 + count * list.size() / first.size();
}

template <typename Container>
qint64 countIn(const QVariant &value)
{
    qint64 count = 1;
    for (const QVariant &element : inside<Container>(value))
        count += countValues(element);
    return count;
}

} // namespace

QString brief(const QVariant &value, qsizetype length)
{
    QString text;
    write(text, value, length);
    text.replace(QLatin1Char('\n'), QLatin1Char(' '));
    return text.size() > length ? text.left(length) + QChar(0x2026) : text;
}

bool contains(const QVariant &value, const QString &text, int valueCount)
{
    return search(value, text, valueCount);
}

qint64 countValues(const QVariant &value)
{
    switch (value.typeId()) {
    case QMetaType::QVariantMap:
        return countIn<QVariantMap>(value);
    case QMetaType::QVariantHash:
        return countIn<QVariantHash>(value);
    case QMetaType::QVariantList:
        return countInList(value);
    case QMetaType::QStringList:
        return 1 + inside<QStringList>(value).size();
    default:
        return 1;
    }
}

QString toJson(const QVariant &value)
{
    const QJsonValue json = QJsonValue::fromVariant(value);
    if (json.isObject())
        return QString::fromUtf8(QJsonDocument(json.toObject()).toJson());
    if (json.isArray())
        return QString::fromUtf8(QJsonDocument(json.toArray()).toJson());
    // A JSON document must be an array or object: format an array and remove its brackets.
    const QByteArray list = QJsonDocument(QJsonArray{json}).toJson(QJsonDocument::Compact);
    return QString::fromUtf8(list.mid(1, list.size() - 2));
}

} // namespace workbench::payloadtext
