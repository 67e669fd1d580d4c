#include "ValueDifference.h"

#include <QtCore/QJsonArray>
#include <QtCore/QJsonObject>
#include <QtCore/QStringList>

#include <algorithm>

namespace workbench {

ValueDifference firstDifference(const QJsonValue &expected, const QJsonValue &found,
                                const QString &path)
{
    if (expected.isObject() && found.isObject()) {
        const QJsonObject left = expected.toObject();
        const QJsonObject right = found.toObject();
        const QStringList keys = left.keys() + right.keys();
        for (const QString &key : keys) {
            if (left.value(key) != right.value(key))
                return firstDifference(left.value(key), right.value(key),
                                       path + QLatin1Char('.') + key);
        }
    }
    if (expected.isArray() && found.isArray()) {
        const QJsonArray left = expected.toArray();
        const QJsonArray right = found.toArray();
        for (qsizetype i = 0; i < std::max(left.size(), right.size()); ++i) {
            // Beyond its end a list holds undefined values.
            if (left.at(i) != right.at(i))
                return firstDifference(left.at(i), right.at(i),
                                       path + QStringLiteral("[%1]").arg(i));
        }
    }
    return {path, expected, found};
}

QJsonValue withPlainNumbers(const QJsonValue &value)
{
    if (value.isArray()) {
        QJsonArray plain;
        const QJsonArray array = value.toArray();
        for (const auto &element : array)
            plain.append(withPlainNumbers(element));
        return plain;
    }
    if (!value.isObject())
        return value;
    QJsonObject object = value.toObject();
    QJsonValue number = object.value(QLatin1String("value"));
    if (object.contains(QLatin1String("$type")) && number.isDouble())
        return number;
    for (auto it = object.begin(); it != object.end(); ++it)
        it.value() = withPlainNumbers(it.value());
    return object;
}

} // namespace workbench
