#pragma once

#include "ZonedObject.h"

#include <QtCore/QDateTime>
#include <QtCore/QList>
#include <QtCore/QVariant>
#include <QtQml/qqmlregistration.h>

namespace workbench {

/// Moments as texts that a person types, `2026-03-29 14:05:30`, in one time zone. Moments are
/// milliseconds since the epoch.
class DateTimeTexts : public workbench::ZonedObject
{
    Q_OBJECT
    QML_ELEMENT

public:
    using ZonedObject::ZonedObject;

    Q_INVOKABLE QString textOf(qint64 moment) const;
    /// The moment of a text; the seconds may be left out. Undefined for a text that is not a time,
    /// and for a time that the zone skips. Of a time that occurs twice the first one is meant.
    Q_INVOKABLE QVariant momentOf(const QString &text) const;
    /// Why a text is not a time, or which of two times it means. Empty for any other text.
    Q_INVOKABLE QString remarkOn(const QString &text) const;
    /// A duration in words, as "1 h 2 min 3 s".
    Q_INVOKABLE static QString lengthText(qint64 milliseconds);

private:
    /// All moments at which the clocks of the zone show this, the first one first.
    QList<qint64> momentsOf(QDate date, QTime time) const;
};

} // namespace workbench
