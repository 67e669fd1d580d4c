#pragma once

#include "FrameMeter.h"

#include <QtCore/QJsonObject>
#include <QtCore/QStringList>

namespace workbench {

/// What was measured of some doings of a user, as a table and as JSON.
class FrameReport
{
public:
    /// A frame of a screen with sixty of them a second, in milliseconds.
    static constexpr double FrameMs = 1000.0 / 60;

    /// What is added for the same doing again counts with what there is.
    void add(const QString &doing, const FrameTimes &times);

    /// A table for each measure, in Markdown.
    QString tables() const;
    /// Writes @p about and the figures; false when the file can't be written.
    bool write(const QString &file, QJsonObject about) const;

private:
    struct Row
    {
        QString doing;
        FrameTimes times;
    };
    QList<Row> m_rows;
};

} // namespace workbench
