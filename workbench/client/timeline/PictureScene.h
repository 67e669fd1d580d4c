#pragma once

#include <QtCore/QRandomGenerator>
#include <QtCore/QRectF>
#include <QtCore/QString>
#include <QtGui/QColor>

#include <vector>

class QPainter;

namespace workbench {

/// What a camera would see, made up from its key: the same for the same key and time, different
/// for another of either. Everything is measured in shares of the picture's width and height.
class PictureScene
{
public:
    explicit PictureScene(const QString &key = {});

    /// What stands still, in the light of an hour of the day (0 to 24, with fractions).
    void paintScenery(QPainter &painter, QSizeF size, double hour) const;
    /// What moves; @p time in milliseconds.
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
        double periodMs; ///< once through the picture and a while of absence
        double phase;
        bool leftwards;
    };

    void paintBlock(QPainter &painter, QSizeF size, const Block &block, double light) const;

    double m_horizon;
    int m_groundHue;
    std::vector<Block> m_blocks;
    std::vector<Mover> m_movers; ///< those in front come last
};

} // namespace workbench
