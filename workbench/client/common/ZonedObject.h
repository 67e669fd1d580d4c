#pragma once

#include <QtCore/QObject>
#include <QtCore/QTimeZone>
#include <QtQml/qqmlregistration.h>

namespace workbench {

/// What tells days and times of day in one time zone. The tools of QML find it as a base class by
/// its whole name only.
class ZonedObject : public QObject
{
    Q_OBJECT
    QML_ANONYMOUS
    /// IANA identifier; an unknown one means UTC.
    Q_PROPERTY(QString timeZone READ timeZone WRITE setTimeZone NOTIFY timeZoneChanged)
    /// Whether Qt knows the zone.
    Q_PROPERTY(bool zoneKnown READ isZoneKnown NOTIFY timeZoneChanged)

public:
    using QObject::QObject;

    QString timeZone() const { return m_timeZone; }
    void setTimeZone(const QString &ianaId);
    bool isZoneKnown() const { return QTimeZone(m_timeZone.toUtf8()).isValid(); }

Q_SIGNALS:
    void timeZoneChanged();

protected:
    const QTimeZone &zone() const { return m_zone; }

private:
    QString m_timeZone;
    QTimeZone m_zone = QTimeZone::utc();
};

} // namespace workbench
