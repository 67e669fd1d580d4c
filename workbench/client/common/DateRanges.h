#pragma once

#include "ZonedObject.h"

#include <QtCore/QVariant>
#include <QtQml/qqmlregistration.h>

namespace workbench {

/// Ranges of whole days in one time zone, as the bookmark panel filters by them. Days are ISO
/// texts, `2026-03-29`; they order as texts do. Moments are milliseconds since the epoch.
class DateRanges : public workbench::ZonedObject
{
    Q_OBJECT
    QML_ELEMENT

public:
    enum Preset { All, Today, Yesterday, ThisWeek, Days };
    Q_ENUM(Preset)

    using ZonedObject::ZonedObject;

    /// First and last millisecond of a preset as startTimestamp and endTimestamp. @p firstDay and
    /// @p lastDay, in any order, are read for Days only; with a text that is no day it means All.
    Q_INVOKABLE QVariantMap range(workbench::DateRanges::Preset preset, qint64 now,
                                  const QString &firstDay = {}, const QString &lastDay = {}) const;

    /// The day of a moment.
    Q_INVOKABLE QString dayOf(qint64 moment) const;
    /// A day some days or months later; within a shorter month its last day.
    Q_INVOKABLE static QString dayLater(const QString &day, int days, int months = 0);
    /// A day in the system locale's short format.
    Q_INVOKABLE static QString shortText(const QString &day);
};

} // namespace workbench
