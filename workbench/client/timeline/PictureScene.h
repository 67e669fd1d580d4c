#pragma once

#include <QtCore/QRandomGenerator>
#include <QtCore/QRectF>
#include <QtCore/QString>
#include <QtGui/QColor>

#include <vector>

class QPainter;

namespace workbench {

/// Paints a random scene that depends only on the camera key and the time. Positions and sizes are
/// shares of the picture's width and height.
class PictureScene
{
public:
    explicit PictureScene(const QString &key = {});

    /// Paints the background.
    /// @param hour time of day from 0 to 24, for the light
    void paintScenery(QPainter &painter, QSizeF size, double hour) const;
    /// Paints the moving objects.
    /// @param time milliseconds since the epoch
    void paintTraffic(QPainter &painter, QSizeF size, qint64 time) const;

private:
    struct Block
    {
        QRectF place;
        QColor colour;
        int windows; ///< in a row
    };
    struct Mover
    {
        double y;
        QSizeF size;
        QColor colour;
        double periodMs; ///< time through the picture and outside of it
        double phase;
        bool leftwards;
    };

    void paintBlock(QPainter &painter, QSizeF size, const Block &block, double light) const;

    double m_horizon;
    int m_groundHue;
    std::vector<Block> m_blocks;
    std::vector<Mover> m_movers; ///< sorted from back to front
};

} // namespace workbench
