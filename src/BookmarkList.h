#pragma once

#include "BookmarkRecord.h"
#include "CameraNames.h"
#include "Columns.h"
#include "PageRange.h"

#include <QtCore/QDateTime>
#include <QtCore/QString>
#include <QtCore/QVariant>

#include <cstddef>
#include <memory>
#include <unordered_map>
#include <vector>

namespace tessaline {

/// Rows of the list, in ascending order unless stated otherwise.
using Rows = std::vector<quint32>;

/// The bookmarks of all stations.
///
/// A site has hundreds of thousands; as maps they would take two kilobytes each, and a question of
/// the panel would touch all of them. The list stores columns instead and makes a record when
/// somebody asks for it. Names and texts of a record are those of the moment when it was appended.
class BookmarkList
{
public:
    std::size_t size() const { return m_starts.size(); }

    /// Appends the records of a station's answer, all or none.
    void append(const QVariantList &serverRecords, const CameraNames &names,
                const std::shared_ptr<TimeFormatter> &formatter);

    void clear();

    BookmarkRecord record(quint32 row) const;

    /// @return the bookmarks that start between two moments, both included
    Rows rowsInRange(qint64 first, qint64 last) const;

    /// Removes the rows of other cameras.
    void filterByCamera(Rows &rows, const QString &cameraKey) const;

    /// Removes the rows that contain @p text neither in camera name, creator, description nor time
    /// range, in upper or lower case.
    void filterByText(Rows &rows, const QString &text) const;

    /// Orders rows by the text under a display key, days by their date, and equal ones by start,
    /// the latest first. Only the rows of @p page, a range within @p rows, get their place; the
    /// others stay in any order.
    void sort(Rows &rows, const QString &key, bool ascending, Range page);

private:
    struct CameraHash
    {
        std::size_t operator()(const Camera &camera) const;
    };
    struct IsSameCamera
    {
        bool operator()(const Camera &left, const Camera &right) const;
    };
    /// The formatter of the rows from @p firstRow to that of the next entry.
    struct FormatterRun
    {
        std::size_t firstRow;
        std::shared_ptr<TimeFormatter> formatter;
    };
    struct TextKey;
    struct CameraTextKey;

    void reserve(std::size_t count);
    void truncate(std::size_t rows);
    void append(const BookmarkRecord &record, quint32 camera, TimeFormatter &formatter);
    TimeFormatter &formatterOf(quint32 row) const;
    const std::vector<QDateTime> &dates();
    QString uniqueText(quint32 row, const QString &key) const;
    template <typename IsBefore>
    void sortByNumber(Rows &rows, const std::vector<quint32> &numberOf, std::size_t count,
                      IsBefore isBefore, Range page) const;
    void sortByUniqueText(Rows &rows, const QString &key, bool ascending, Range page) const;

    std::vector<qint64> m_starts;
    std::vector<qint64> m_ends;
    DictionaryColumn<Camera, CameraHash, IsSameCamera> m_cameras;
    TextDictionary m_creators;
    TextDictionary m_groups;
    TextDictionary m_locations;
    TextDictionary m_dates; ///< display texts of the days
    TextColumn m_bookmarkIDs;
    TextColumn m_descriptions;
    FoldedColumn m_foldedDescriptions;
    std::vector<FormatterRun> m_formatters;
    std::unordered_map<quint32, QString> m_uncachedDateTimes; ///< by row, where no formatter has it

    std::vector<QDateTime> m_parsedDates; ///< by number in m_dates
    QString m_parsedFormat;               ///< the format in which they were parsed
};

} // namespace tessaline
