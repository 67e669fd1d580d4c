#pragma once

#include <QtCore/QDate>
#include <QtCore/QStringList>

#include <functional>

namespace stations {

class StationNetwork;

/// Loads bookmarks from a CSV file with a header line into the stations of a network.
///
/// Columns are found by their names, in any order; others are ignored:
///   camera                           camera identifier or camera key; with offsets also the name
///                                    of a recording
///   start, end                       milliseconds since the epoch or ISO 8601 (UTC by default)
///   start_offset_ms, end_offset_ms   instead of start and end: milliseconds since the start of the
///                                    recording
///   event, description               the text; event is used if description is empty
///   station, creator, group          optional; the station is a relay path
/// RecordingPlan chooses the camera and the start of a recording.
class CsvImport
{
public:
    static constexpr qsizetype BatchSize = 1'000; ///< bookmarks of one transaction
    static constexpr qsizetype MaxMessages = 100;

    struct Progress
    {
        qint64 lines = 0;
        qint64 bytes = 0;
        qint64 totalBytes = 0; ///< 0 if the size is unknown
    };

    /// Returns false to cancel the import; bookmarks that are already stored stay.
    using ProgressCallback = std::function<bool(const Progress &progress)>;

    struct Result
    {
        qint64 imported = 0;
        qint64 recordings = 0; ///< distinct names of recordings
        qint64 skipped = 0;    ///< lines that are not usable
        QStringList messages;  ///< "FILE:LINE: reason" of the first MaxMessages skipped lines
        bool cancelled = false;
        QString error; ///< message with file or station if the import failed; empty otherwise
    };

    /// @param network  not owned; must outlive the import
    /// @param baseDate day of the latest recordings
    CsvImport(StationNetwork &network, QDate baseDate);

    /// Sets a function that is called every thousand lines and at the end.
    void setProgressCallback(const ProgressCallback &callback) { m_progress = callback; }

    /// Imports a file.
    Result run(const QString &path) const;

private:
    StationNetwork &m_network;
    QDate m_baseDate;
    ProgressCallback m_progress;
};

} // namespace stations
