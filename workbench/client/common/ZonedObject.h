#pragma once

#include <QtCore/QObject>
#include <QtCore/QTimeZone>
#include <QtQml/qqmlregistration.h>

namespace workbench {

/// Base of the classes that compute in a time zone. Derived classes must write its qualified name,
/// by which qmllint finds the base class.
class ZonedObject : public QObject
{
    Q_OBJECT
    QML_ANONYMOUS
    /// IANA identifier; an unknown one means UTC.
    Q_PROPERTY(QString timeZone READ timeZone WRITE setTimeZone NOTIFY timeZoneChanged)
    /// True if Qt knows the zone.
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
