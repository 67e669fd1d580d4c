#pragma once

#include <QtCore/QJsonValue>
#include <QtCore/QString>

namespace workbench {

/// The first place at which two recorded values differ.
struct ValueDifference
{
    QString path;        ///< ".key" and "[index]" of the parts around it
    QJsonValue expected; ///< undefined if there is nothing at that place
    QJsonValue found;
};

/// @param expected not equal to @p found
ValueDifference firstDifference(const QJsonValue &expected, const QJsonValue &found,
                                const QString &path = {});

/// The value with plain numbers. QML has one type of numbers, so that the type which a method
/// returns is no behaviour.
QJsonValue withPlainNumbers(const QJsonValue &value);

} // namespace workbench
