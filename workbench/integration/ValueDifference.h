#pragma once

#include <QtCore/QJsonValue>
#include <QtCore/QString>

namespace workbench {

/// The first place at which two recorded values differ.
struct ValueDifference
{
    QString path;        ///< ".key" and "[index]" of the enclosing values, from the outermost
    QJsonValue expected; ///< undefined if there is nothing at that place
    QJsonValue found;
};

/// @param expected not equal to @p found
ValueDifference firstDifference(const QJsonValue &expected, const QJsonValue &found,
                                const QString &path = {});

/// Replaces typed numbers in a value by plain ones. QML has one type of numbers, so the type that a
/// method returns makes no difference.
QJsonValue withPlainNumbers(const QJsonValue &value);

} // namespace workbench
