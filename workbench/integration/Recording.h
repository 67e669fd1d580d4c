#pragma once

#include "TrafficEntry.h"
#include "topology/Topology.h"

#include <QtCore/QList>
#include <QtCore/QStringList>

#include <deque>
#include <optional>

namespace workbench {

/// A session with the plug-in as a file of JSON lines; docs/recordings.md describes the form.
struct Recording
{
    /// The deepest nesting that can be replayed: each level needs some of the stack.
    static constexpr int MaxDepth = 500;

    /// What the session depended on.
    struct Header
    {
        QString pluginName;
        QString version; ///< of the program that recorded
        QString timeZone;
        QString locale;
        qint64 start = 0;     ///< milliseconds since the epoch
        bool complete = true; ///< begins with a new plug-in and lacks no payload
        qint64 entries = 0;   ///< in the file, set by write(); 0: unknown
        QList<standin::Topology::Node> topology;

        /// With time zone and locale of this process.
        static Header ofThisProcess();
    };

    struct Line
    {
        int number = 0; ///< counts from 1
        TrafficEntry entry;
    };

    struct BadLine
    {
        QString file;
        int number = 0;
        QString reason;
    };

    QString file;
    Header header;
    QList<Line> lines;
    QList<BadLine> badLines; ///< the last one is the place where a recording was cut off
    bool isCutOff = false;

    /// Nothing with @p error, which names the file, when there is no recording in it. Lines that
    /// can't be used are noted and left out.
    static std::optional<Recording> read(const QString &path, QString *error);
    /// @return the line of an entry, with its end
    static QByteArray lineOf(const TrafficEntry &entry);
    /// Returns what went wrong, or an empty text.
    static QString write(const QString &path, const Header &header,
                         const std::deque<TrafficEntry> &entries);
};

} // namespace workbench
