#pragma once

#include "ZonedObject.h"

#include <QtCore/QDateTime>
#include <QtCore/QList>
#include <QtCore/QVariant>
#include <QtQml/qqmlregistration.h>

namespace workbench {

/// Converts between moments and texts that a user types, like `2026-03-29 14:05:30`, in a time
/// zone. Moments are milliseconds since the epoch.
class DateTimeTexts : public workbench::ZonedObject
{
    Q_OBJECT
    QML_ELEMENT

public:
    using ZonedObject::ZonedObject;

    Q_INVOKABLE QString textOf(qint64 moment) const;
    /// Returns the moment of a text, in which the seconds are optional. Undefined if the text is
    /// not a time or the zone skips it. Returns the first moment of a time that occurs twice.
    Q_INVOKABLE QVariant momentOf(const QString &text) const;
    /// Returns the reason why a text is not a time, or a remark on a time that occurs twice;
    /// otherwise an empty text.
    Q_INVOKABLE QString remarkOn(const QString &text) const;
    /// Formats a duration, like "1 h 2 min 3 s".
    Q_INVOKABLE static QString lengthText(qint64 milliseconds);

private:
    /// Returns all moments with this local time, in ascending order: none, one or two.
    QList<qint64> momentsOf(QDate date, QTime time) const;
};

} // namespace workbench
