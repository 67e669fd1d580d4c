#include "Describe.h"

#include <QtCore/QByteArray>
#include <QtCore/QStringList>

using namespace Qt::StringLiterals;

namespace {

QString escaped(const QString &text)
{
    QString result;
    for (const QChar c : text) {
        if (c == u'"' || c == u'\\')
            result += u'\\';
        if (c.unicode() >= 0x20 && c.unicode() < 0x7f)
            result += c;
        else
            result += u"\\u%1"_s.arg(int(c.unicode()), 4, 16, QLatin1Char('0'));
    }
    return result;
}

QString quoted(const char *type, const QString &text, bool isNull)
{
    return QLatin1String(type) +
           (isNull ? u" null"_s : QLatin1String(" \"") + escaped(text) + u'"');
}

QString describeMap(const QVariantMap &map)
{
    QStringList parts;
    for (auto it = map.cbegin(); it != map.cend(); ++it)
        parts.append(escaped(it.key()) + u": "_s + describe(it.value()));
    return u'{' + parts.join(u", "_s) + u'}';
}

template <typename List>
QString describeList(const List &list)
{
    QStringList parts;
    for (const auto &element : list)
        parts.append(describe(QVariant(element)));
    return u'[' + parts.join(u", "_s) + u']';
}

} // namespace

QString describe(const QVariant &value)
{
    switch (value.typeId()) {
    case QMetaType::UnknownType:
        return u"invalid"_s;
    case QMetaType::QString:
        return quoted("QString", value.toString(), value.toString().isNull());
    case QMetaType::QByteArray:
        return quoted("QByteArray", QString::fromLatin1(value.toByteArray()),
                      value.toByteArray().isNull());
    case QMetaType::QVariantMap:
        return describeMap(value.toMap());
    case QMetaType::QVariantHash:
        return u"QVariantHash "_s + describeMap(value.toMap());
    case QMetaType::QVariantList:
        return describeList(value.toList());
    case QMetaType::QStringList:
        return u"QStringList "_s + describeList(value.toStringList());
    default:
        return QLatin1String(value.typeName()) + u' ' + value.toString();
    }
}
