#pragma once

#include "ZonedObject.h"

#include <QtCore/QVariant>
#include <QtQml/qqmlregistration.h>

namespace workbench {

/// Computes ranges of whole days in a time zone, for the filter of the bookmark panel. Days are ISO
/// texts like `2026-03-29`, which sort by date. Moments are milliseconds since the epoch.
class DateRanges : public workbench::ZonedObject
{
    Q_OBJECT
    QML_ELEMENT

public:
    enum Preset { All, Today, Yesterday, ThisWeek, Days };
    Q_ENUM(Preset)

    using ZonedObject::ZonedObject;

    /// Returns the first and last millisecond of a preset as a map of startTimestamp and
    /// endTimestamp.
    /// @param firstDay,lastDay in any order, for the preset Days; an invalid day means All
    Q_INVOKABLE QVariantMap range(workbench::DateRanges::Preset preset, qint64 now,
                                  const QString &firstDay = {}, const QString &lastDay = {}) const;

    /// @return the day of a moment
    Q_INVOKABLE QString dayOf(qint64 moment) const;
    /// @return the day some days or months later; the last day of a shorter month
    Q_INVOKABLE static QString dayLater(const QString &day, int days, int months = 0);
    /// @return a day in the system locale's short format
    Q_INVOKABLE static QString shortText(const QString &day);
};

} // namespace workbench
