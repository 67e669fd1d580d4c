#pragma once

#include "FrameMeter.h"

#include <QtCore/QJsonObject>
#include <QtCore/QStringList>

namespace workbench {

/// Formats the measured times of user actions as tables and as JSON.
class FrameReport
{
public:
    /// Duration of a frame at 60 Hz, in milliseconds.
    static constexpr double FrameMs = 1000.0 / 60;

    /// Adds times to those of the same action.
    void add(const QString &action, const FrameTimes &times);

    /// @return a Markdown table for each measure
    QString tables() const;
    /// Writes the times as JSON.
    /// @param about additional keys of the JSON object
    /// @return false if the file can't be written
    bool write(const QString &file, QJsonObject about) const;

private:
    struct Row
    {
        QString action;
        FrameTimes times;
    };
    QList<Row> m_rows;
};

} // namespace workbench
