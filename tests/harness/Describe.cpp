#include "Describe.h"

#include <QtCore/QByteArray>
#include <QtCore/QStringList>

namespace {

QString escaped(const QString &text)
{
    QString result;
    for (const QChar c : text) {
        if (c == QLatin1Char('"') || c == QLatin1Char('\\'))
            result += QLatin1Char('\\');
        if (c.unicode() >= 0x20 && c.unicode() < 0x7f)
            result += c;
        else
            result += QStringLiteral("\\u%1").arg(c.unicode(), 4, 16, QLatin1Char('0'));
    }
    return result;
}

QString quoted(const char *type, const QString &text, bool isNull)
{
    return QLatin1String(type) +
           (isNull ? QStringLiteral(" null") : QLatin1String(" \"") + escaped(text) + u'"');
}

QString describeMap(const QVariantMap &map)
{
    QStringList parts;
    for (auto it = map.cbegin(); it != map.cend(); ++it)
        parts.append(escaped(it.key()) + QLatin1String(": ") + describe(it.value()));
    return QLatin1Char('{') + parts.join(QLatin1String(", ")) + QLatin1Char('}');
}

template <typename List>
QString describeList(const List &list)
{
    QStringList parts;
    for (const auto &element : list)
        parts.append(describe(QVariant(element)));
    return QLatin1Char('[') + parts.join(QLatin1String(", ")) + QLatin1Char(']');
}

} // namespace

QString describe(const QVariant &value)
{
    switch (value.typeId()) {
    case QMetaType::UnknownType:
        return QStringLiteral("invalid");
    case QMetaType::QString:
        return quoted("QString", value.toString(), value.toString().isNull());
    case QMetaType::QByteArray:
        return quoted("QByteArray", QString::fromLatin1(value.toByteArray()),
                      value.toByteArray().isNull());
    case QMetaType::QVariantMap:
        return describeMap(value.toMap());
    case QMetaType::QVariantHash:
        return QLatin1String("QVariantHash ") + describeMap(value.toMap());
    case QMetaType::QVariantList:
        return describeList(value.toList());
    case QMetaType::QStringList:
        return QLatin1String("QStringList ") + describeList(value.toStringList());
    default:
        return QLatin1String(value.typeName()) + QLatin1Char(' ') + value.toString();
    }
}
