#pragma once

#include "BookmarkRecord.h"
#include "TextColumns.h"

#include <QtCore/QDateTime>
#include <QtCore/QString>
#include <QtCore/QVariant>

#include <array>
#include <cstddef>
#include <memory>
#include <unordered_map>
#include <vector>

namespace tessaline {

/// Rows of the list, in ascending order unless stated otherwise.
using Rows = std::vector<quint32>;

/// Positions from @p first, included, to @p end, excluded.
struct Range
{
    std::size_t first;
    std::size_t end;
};

/// Returns the range of one page of a list.
/// @param size number of records in the list
/// @param pageSize any number; the list is cut as QList::mid() does, also for 0 and below
/// @param pageNumber from 0; a number beyond the last page gives the first page
Range pageRange(std::size_t size, int pageSize, int pageNumber);

/// The bookmarks of all stations.
///
/// An installation has hundreds of thousands of bookmarks. A map for each would need two kilobytes,
/// and each filter would read all maps. The list stores columns instead and makes a record on
/// demand. The names and texts of a record are those of the moment when it was appended.
class BookmarkList
{
public:
    std::size_t size() const { return m_starts.size(); }

    /// Appends the records of a station's answer. Strong exception guarantee.
    void append(const QVariantList &serverRecords, CameraNames &names,
                const std::shared_ptr<TimeFormatter> &formatter);

    void clear();

    BookmarkRecord record(quint32 row) const;

    /// @return the bookmarks that start between two moments, both included, in milliseconds since
    /// the epoch
    Rows rowsInRange(qint64 first, qint64 last) const;

    /// Removes the rows whose camera has another key.
    void filterByCamera(Rows &rows, const QString &cameraKey) const;

    /// Removes the rows that contain @p text neither in the camera name, creator or description nor
    /// in the time range; the case does not matter.
    void filterByText(Rows &rows, const QString &text) const;

    /// Sorts rows by the text under a display key, days by their date; of equal rows the latest
    /// start comes first. Only the positions in @p page, a range within @p rows, are final; the
    /// order of the others is unspecified.
    void sort(Rows &rows, const QString &key, bool ascending, Range page);

private:
    enum TextField { CameraID, CameraKey, CameraName, Creator, Date, Group, LocationID, RelayPath };
    struct DictionaryField
    {
        const QString *displayKey; ///< null if only filters use the field
        QString BookmarkRecord::*text;
    };
    static const std::array<DictionaryField, RelayPath + 1> dictionaryFields; ///< by TextField

    /// The formatter of the rows from @p firstRow to the first row of the next entry.
    struct FormatterRun
    {
        std::size_t firstRow;
        std::shared_ptr<TimeFormatter> formatter;
    };

    template <typename Action>
    void forEachColumn(Action action);
    TimeFormatter &formatterOf(quint32 row) const;
    bool hasInTimeRange(quint32 row, const char *text) const;
    const std::vector<QDateTime> &dates();
    template <typename Values>
    void sortByNumber(Rows &rows, const std::vector<quint32> &numberOf, const Values &values,
                      bool ascending, Range page) const;
    void sortByUniqueText(Rows &rows, const QString &key, bool ascending, Range page) const;

    std::vector<qint64> m_starts;
    std::vector<qint64> m_ends;
    std::array<TextDictionary, RelayPath + 1> m_dictionaries; ///< by TextField
    TextColumn m_bookmarkIDs;
    TextColumn m_descriptions;
    TextColumn m_foldedDescriptions;
    bool m_isSearchable = true; ///< true if m_foldedDescriptions has all descriptions
    std::vector<FormatterRun> m_formatters;
    std::unordered_map<quint32, QString> m_uncachedDateTimes; ///< by row; not cached by a formatter

    std::vector<QDateTime> m_parsedDates; ///< the texts of Date
    QString m_parsedFormat;               ///< the format in which they were parsed
};

} // namespace tessaline
