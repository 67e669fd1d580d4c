#pragma once

#include "ZonedObject.h"

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
    /// The moment of a text; the seconds may be left out. Undefined for a text that is none, and
    /// for a time that the zone skips. Of a time that comes twice one of both is meant.
    Q_INVOKABLE QVariant momentOf(const QString &text) const;
};

} // namespace workbench
