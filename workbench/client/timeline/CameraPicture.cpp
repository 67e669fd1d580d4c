#include "CameraPicture.h"

#include "ServerZone.h"

#include <QtCore/QDateTime>
#include <QtCore/QLocale>
#include <QtGui/QFontDatabase>
#include <QtGui/QPainter>

#include <algorithm>

namespace workbench {

namespace {

constexpr int QuarterMs = 15 * 60 * 1'000;
constexpr int CaptionMargin = 4;

} // namespace

CameraPicture::CameraPicture(QQuickItem *parent)
    : QQuickPaintedItem(parent)
{
    setOpaquePainting(true);
    connect(this, &CameraPicture::changed, this, [this] { update(); });
}

void CameraPicture::setCameraKey(const QString &key)
{
    m_cameraKey = key;
    m_scene = PictureScene(key);
    m_scenery = {};
    Q_EMIT changed();
}

void CameraPicture::setCaption(const QString &caption)
{
    m_caption = caption;
    Q_EMIT changed();
}

void CameraPicture::setTime(double time)
{
    if (time == m_time)
        return;
    m_time = time;
    Q_EMIT changed();
}

void CameraPicture::setTimeZone(const QString &ianaId)
{
    m_timeZone = ianaId;
    m_zone = serverZone(ianaId);
    Q_EMIT changed();
}

QDateTime CameraPicture::moment() const
{
    return QDateTime::fromMSecsSinceEpoch(qint64(m_time), m_zone);
}

QString CameraPicture::timeText() const
{
    return moment().toString(QStringLiteral("yyyy-MM-dd HH:mm:ss"));
}

void CameraPicture::paint(QPainter *painter)
{
    painter->drawImage(0, 0, scenery());
    m_scene.paintTraffic(*painter, size(), qint64(m_time));
    paintCaption(*painter, m_caption, true);
    paintCaption(*painter, timeText(), false);
}

const QImage &CameraPicture::scenery()
{
    const int quarter = moment().time().msecsSinceStartOfDay() / QuarterMs;
    if (m_scenery.size() != size().toSize() || quarter != m_sceneryQuarter) {
        m_scenery = QImage(size().toSize(), QImage::Format_RGB32);
        m_sceneryQuarter = quarter;
        QPainter painter(&m_scenery);
        m_scene.paintScenery(painter, size(), quarter / 4.0);
    }
    return m_scenery;
}

void CameraPicture::paintCaption(QPainter &painter, const QString &text, bool atTop) const
{
    QFont font = QFontDatabase::systemFont(QFontDatabase::FixedFont);
    font.setPixelSize(std::clamp(int(std::min(height() / 14, width() / 14)), 9, 28));
    const QFontMetrics metrics(font);
    const QString shown =
        metrics.elidedText(text, Qt::ElideRight, int(width()) - 4 * CaptionMargin);
    const QRectF box(CaptionMargin,
                     atTop ? CaptionMargin : height() - CaptionMargin - metrics.height(),
                     metrics.horizontalAdvance(shown) + 2 * CaptionMargin, metrics.height());
    painter.fillRect(box, QColor(0, 0, 0, 130));
    painter.setFont(font);
    painter.setPen(Qt::white);
    painter.drawText(box, Qt::AlignCenter, shown);
}

} // namespace workbench
