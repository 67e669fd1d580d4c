#pragma once

#include <QtCore/QDate>
#include <QtCore/QStringList>

#include <functional>

namespace workbench {

class Site;

/// Loads bookmarks from a CSV file with a header line into the stations of a site.
///
/// Columns are found by their names, in any order; others are ignored:
///   camera                           a camera's identifier or key; with offsets also the name of a
///                                    recording
///   start, end                       milliseconds since the epoch or ISO 8601 (UTC when it says
///                                    nothing else), or instead of these two
///   start_offset_ms, end_offset_ms   milliseconds since the start of the recording
///   event, description               the text; the description wins where it is not empty
///   station, creator, group          optional; the station by its relay path
/// The start of recordings, and the camera of unknown ones, is RecordingPlan's.
class CsvImport
{
public:
    static constexpr qsizetype BatchSize = 1'000; ///< bookmarks of one transaction
    static constexpr qsizetype MaxMessages = 100;

    struct Progress
    {
        qint64 lines = 0;
        qint64 bytes = 0;
        qint64 totalBytes = 0; ///< 0 when the size is not known
    };

    /// Returns false to cancel; what has been committed stays, nothing else is written.
    using ProgressCallback = std::function<bool(const Progress &progress)>;

    struct Result
    {
        qint64 imported = 0;
        qint64 recordings = 0; ///< names that are not cameras, and were placed as recordings
        qint64 skipped = 0;    ///< lines that could not be used
        QStringList messages;  ///< "FILE:LINE: reason" of the first MaxMessages of them
        bool cancelled = false;
        QString error; ///< why the import ended early or never began; names the file or station
    };

    /// @p site outlives the import; @p baseDate is the day of the latest recordings.
    CsvImport(Site &site, QDate baseDate);

    /// Called every thousand lines and at the end.
    void setProgressCallback(const ProgressCallback &callback) { m_progress = callback; }

    /// Imports one file, from its first line to its last.
    Result run(const QString &path) const;

private:
    Site &m_site;
    QDate m_baseDate;
    ProgressCallback m_progress;
};

} // namespace workbench
