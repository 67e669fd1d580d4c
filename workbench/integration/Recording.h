#pragma once

#include "TrafficEntry.h"
#include "topology/Topology.h"

#include <QtCore/QList>
#include <QtCore/QStringList>

#include <deque>
#include <optional>

namespace workbench {

/// A recorded session with the plug-in; docs/recordings.md describes the format of the file.
struct Recording
{
    /// The maximum depth of nested entries. It bounds the recursion of a replay.
    static constexpr int MaxDepth = 500;

    /// The conditions of the session.
    struct Header
    {
        QString pluginName;
        QString version; ///< of the recording program
        QString timeZone;
        QString locale;
        qint64 start = 0;     ///< milliseconds since the epoch
        bool complete = true; ///< begins with a new plug-in and has all entries and payloads
        qint64 entries = 0;   ///< number of entries in the file, set by write(); 0: unknown
        QList<standin::Topology::Node> topology;

        /// @return a header with version, time zone and locale of this process
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
    QList<BadLine> badLines; ///< if the file is cut off, the last one is the place
    bool isCutOff = false;

    /// Reads a file. Skips unusable lines and adds them to badLines.
    /// @param error set on failure to a message with the file
    /// @return nullopt if the file is not a recording
    static std::optional<Recording> read(const QString &path, QString *error);
    /// @return the line of an entry, with the line end
    static QByteArray lineOf(const TrafficEntry &entry);
    /// Writes a file.
    /// @return an error message with the file, or an empty text
    static QString write(const QString &path, const Header &header,
                         const std::deque<TrafficEntry> &entries);
};

} // namespace workbench
