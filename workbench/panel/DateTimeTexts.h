#pragma once

#include <QtCore/QObject>
#include <QtCore/QTimeZone>
#include <QtCore/QVariant>
#include <QtQml/qqmlregistration.h>

namespace workbench {

/// Moments as texts that a person types, `2026-03-29 14:05:30`, in one time zone. Moments are
/// milliseconds since the epoch.
class DateTimeTexts : public QObject
{
    Q_OBJECT
    QML_ELEMENT
    /// IANA identifier; an unknown one means UTC.
    Q_PROPERTY(QString timeZone READ timeZone WRITE setTimeZone NOTIFY timeZoneChanged)

public:
    using QObject::QObject;

    QString timeZone() const { return m_timeZone; }
    void setTimeZone(const QString &ianaId);

    Q_INVOKABLE QString textOf(qint64 moment) const;
    /// The moment of a text; the seconds may be left out. Undefined for a text that is none, and
    /// for a time that the zone skips. Of a time that comes twice one of both is meant.
    Q_INVOKABLE QVariant momentOf(const QString &text) const;

Q_SIGNALS:
    void timeZoneChanged();

private:
    QString m_timeZone;
    QTimeZone m_zone = QTimeZone::utc();
};

} // namespace workbench
