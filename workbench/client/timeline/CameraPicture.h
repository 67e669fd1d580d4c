#pragma once

#include "PictureScene.h"

#include <QtCore/QTimeZone>
#include <QtGui/QImage>
#include <QtQuick/QQuickPaintedItem>

namespace workbench {

/// Paints a replacement for a camera's picture at one moment, with the camera's name and the time.
/// Repaints only if a property changes.
class CameraPicture : public QQuickPaintedItem
{
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(QString cameraKey MEMBER m_cameraKey WRITE setCameraKey NOTIFY changed)
    Q_PROPERTY(QString caption MEMBER m_caption WRITE setCaption NOTIFY changed)
    /// The moment, in milliseconds since the epoch.
    Q_PROPERTY(double time MEMBER m_time WRITE setTime NOTIFY changed)
    /// The zone of the shown time, an IANA identifier; UTC if it is unknown.
    Q_PROPERTY(QString timeZone MEMBER m_timeZone WRITE setTimeZone NOTIFY changed)
    /// The time as shown in the picture.
    Q_PROPERTY(QString timeText READ timeText NOTIFY changed)

public:
    explicit CameraPicture(QQuickItem *parent = nullptr);

    void setCameraKey(const QString &key);
    void setCaption(const QString &caption);
    void setTime(double time);
    void setTimeZone(const QString &ianaId);
    QString timeText() const;

    void paint(QPainter *painter) override;

Q_SIGNALS:
    void changed();

private:
    QDateTime moment() const;
    const QImage &scenery();
    void paintCaption(QPainter &painter, const QString &text, bool atTop) const;

    QString m_cameraKey;
    QString m_caption;
    double m_time = 0;
    QString m_timeZone;
    QTimeZone m_zone = QTimeZone::utc();
    PictureScene m_scene;

    QImage m_scenery;          ///< cached background; null if it must be painted
    int m_sceneryQuarter = -1; ///< quarter of an hour for which the background is painted
};

} // namespace workbench
