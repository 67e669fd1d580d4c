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

/// Positions from @p first up to but without @p end.
struct Range
{
    std::size_t first;
    std::size_t end;
};

/// The range of one page of a list.
/// @param size number of records in the list
/// @param pageSize any number; 0 or below gives what QList::mid() makes of it
/// @param pageNumber from 0; beyond the last page the first one is returned
Range pageRange(std::size_t size, int pageSize, int pageNumber);

/// The bookmarks of all stations.
///
/// A site has hundreds of thousands; as maps they would take two kilobytes each, and a question of
/// the panel would touch all of them. The list stores columns instead and makes a record on demand.
/// Names and texts of a record are those of the moment when it was appended.
class BookmarkList
{
public:
    std::size_t size() const { return m_starts.size(); }

    /// Appends the records of a station's answer, all or, if it throws std::bad_alloc, none.
    void append(const QVariantList &serverRecords, CameraNames &names,
                const std::shared_ptr<TimeFormatter> &formatter);

    void clear();

    BookmarkRecord record(quint32 row) const;

    /// @return the bookmarks that start between two moments, both included
    Rows rowsInRange(qint64 first, qint64 last) const;

    /// Removes the rows of other cameras.
    void filterByCamera(Rows &rows, const QString &cameraKey) const;

    /// Removes the rows without @p text, in upper or lower case, in camera name, creator,
    /// description and time range.
    void filterByText(Rows &rows, const QString &text) const;

    /// Orders rows by the text under a display key, days by their date, and equal ones by start,
    /// the latest first. Only the rows of @p page, a range within @p rows, get their place; the
    /// others stay in any order.
    void sort(Rows &rows, const QString &key, bool ascending, Range page);

private:
    enum TextField { CameraID, CameraKey, CameraName, Creator, Date, Group, LocationID, RelayPath };
    struct DictionaryField
    {
        const QString *displayKey; ///< null: for filters only
        QString BookmarkRecord::*text;
    };
    static const std::array<DictionaryField, RelayPath + 1> dictionaryFields; ///< by TextField

    /// The formatter of the rows from @p firstRow to that of the next entry.
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
    bool m_isSearchable = true; ///< m_foldedDescriptions has all descriptions
    std::vector<FormatterRun> m_formatters;
    std::unordered_map<quint32, QString> m_uncachedDateTimes; ///< by row, where no formatter has it

    std::vector<QDateTime> m_parsedDates; ///< the texts of Date
    QString m_parsedFormat;               ///< the format in which they were parsed
};

} // namespace tessaline
