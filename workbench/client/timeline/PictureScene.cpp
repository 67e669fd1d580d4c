#include "PictureScene.h"

#include <QtCore/QCryptographicHash>
#include <QtGui/QPainter>

#include <algorithm>
#include <cmath>

namespace workbench {

namespace {

quint32 seedOf(const QString &key)
{
    // Not qHash(), whose result changes with each run.
    const QByteArray hash = QCryptographicHash::hash(key.toUtf8(), QCryptographicHash::Md5);
    return quint32(hash.left(4).toHex().toUInt(nullptr, 16));
}

double between(QRandomGenerator &random, double low, double high)
{
    return low + random.generateDouble() * (high - low);
}

QRectF scaled(const QRectF &share, QSizeF size)
{
    return {share.x() * size.width(), share.y() * size.height(), share.width() * size.width(),
            share.height() * size.height()};
}

/// Returns the brightness: 0 at night, 1 at noon.
double lightAt(double hour)
{
    return std::clamp(0.5 - 0.9 * std::cos(hour * M_PI / 12), 0.0, 1.0);
}

QColor dimmed(const QColor &colour, double light)
{
    return QColor::fromHsvF(colour.hsvHueF(), colour.hsvSaturationF(),
                            float(colour.valueF() * (0.35 + 0.65 * light)));
}

} // namespace

PictureScene::PictureScene(const QString &key)
{
    QRandomGenerator random(seedOf(key));
    m_horizon = between(random, 0.35, 0.55);
    m_groundHue = random.bounded(360);
    for (double x = between(random, -0.1, 0.1); x < 1; x += between(random, 0.12, 0.3)) {
        const double height = between(random, 0.1, m_horizon - 0.05);
        m_blocks.push_back({{x, m_horizon - height, between(random, 0.1, 0.28), height},
                            QColor::fromHsv(random.bounded(360), 40, random.bounded(110, 190)),
                            random.bounded(2, 6)});
    }
    for (int i = 0; i < 7; ++i) {
        const double y = m_horizon + 0.04 + 0.07 * i;
        const bool car = random.bounded(2) == 0;
        const double height = (car ? 0.07 : 0.11) * (0.6 + i * 0.12);
        m_movers.push_back({y,
                            {height * (car ? 1.5 : 0.25), height},
                            QColor::fromHsv(random.bounded(360), 170, 200),
                            between(random, 6'000, 15'000) * (car ? 1 : 3),
                            random.generateDouble(),
                            random.bounded(2) == 0});
    }
}

void PictureScene::paintScenery(QPainter &painter, QSizeF size, double hour) const
{
    const double light = lightAt(hour);
    const double horizon = m_horizon * size.height();
    painter.fillRect(QRectF(0, 0, size.width(), horizon),
                     dimmed(QColor::fromHsv(210, 90, 230), light * light));
    painter.fillRect(QRectF(0, horizon, size.width(), size.height() - horizon),
                     dimmed(QColor::fromHsv(m_groundHue, 25, 130), light));
    for (const Block &block : m_blocks)
        paintBlock(painter, size, block, light);
}

void PictureScene::paintBlock(QPainter &painter, QSizeF size, const Block &block,
                              double light) const
{
    painter.fillRect(scaled(block.place, size), dimmed(block.colour, light));
    const QColor window =
        light < 0.3 ? QColor(0xf0, 0xd8, 0x80) : dimmed(QColor(0x50, 0x60, 0x70), light);
    const double column = block.place.width() / block.windows;
    for (double y = block.place.top() + 0.03; y < m_horizon - 0.05; y += 0.07) {
        for (int i = 0; i < block.windows; ++i) {
            const QRectF pane(block.place.left() + (i + 0.3) * column, y, column * 0.4, 0.03);
            painter.fillRect(scaled(pane, size), window);
        }
    }
}

void PictureScene::paintTraffic(QPainter &painter, QSizeF size, qint64 time) const
{
    for (const Mover &mover : m_movers) {
        double way = std::fmod(double(time) / mover.periodMs + mover.phase, 1.0) * 1.6;
        if (mover.leftwards)
            way = 1.2 - way;
        const QRectF place(way - 0.1, mover.y - mover.size.height(), mover.size.width(),
                           mover.size.height());
        painter.fillRect(scaled(place, size), mover.colour);
        painter.fillRect(
            scaled({place.left(), place.top(), place.width(), place.height() * 0.3}, size),
            mover.colour.lighter(140));
    }
}

} // namespace workbench
