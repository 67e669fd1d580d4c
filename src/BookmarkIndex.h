#pragma once

#include "PageSlice.h"

#include <QtCore/QDateTime>
#include <QtCore/QString>
#include <QtCore/QStringList>
#include <QtCore/QVariant>

#include <cstddef>
#include <map>
#include <string>
#include <unordered_map>
#include <vector>

namespace tessaline {

/// Positions in a list of display records, ascending unless something else is said.
using Rows = std::vector<quint32>;

/// Columns beside a list of display records, for searching it without touching its maps.
///
/// A map that is read costs a handful of cache misses; a list of a hundred thousand costs more than
/// an operator's patience. So what is asked of every record stands here once more, one array for
/// each field. Nothing is remembered between two questions but the columns themselves.
class BookmarkIndex
{
public:
    /// Forgets all records. What was asked of the old list will be asked of the next, so its
    /// columns are filled as that comes.
    void clear();

    /// Takes in the next record of the list, which must have the keys of a display record. When
    /// that throws, the index is of no use before truncate().
    void append(const QVariantMap &record);

    /// Forgets all but the first @p count records. Takes no memory.
    void truncate(std::size_t count);

    /// The records that start between two moments, both included.
    Rows startingBetween(qint64 first, qint64 last) const;

    /// Keeps the records of one camera.
    void keepCamera(Rows &rows, const QString &cameraKey) const;

    /// Keeps the records that contain @p text in one of the fields that are searched, whatever the
    /// case. @p list is the list of all records; it is read only when the columns can't tell.
    void keepText(Rows &rows, const QString &text, const QVariantList &list) const;

    /// Puts the rows into the order of the field @p key and, where that is equal, newest start
    /// first; but only those that come to stand in @p slice, which lies within the rows, are put
    /// into place. Days are ordered by date. @p list is the list of all records.
    void sort(Rows &rows, const QString &key, bool ascending, Slice slice,
              const QVariantList &list);

private:
    /// One field of all records as numbers of its distinct texts.
    struct Column
    {
        std::vector<quint32> textOf; ///< by row
        QStringList texts;           ///< by number
        std::unordered_map<QString, quint32> numbers;

        void append(const QString &text);
    };

    void appendText(const QString &text);
    std::size_t textStart(quint32 row) const;
    const Column &column(const QString &key, const QVariantList &list);
    std::vector<quint32> ranks(const Column &column, const std::vector<quint32> &occurring,
                               bool byDate, bool ascending);
    const std::vector<QDateTime> &parsedDates(const Column &column);

    std::vector<qint64> m_starts;

    std::vector<quint32> m_cameras; ///< by row, numbers of camera keys
    std::unordered_map<QString, quint32> m_cameraNumbers;

    // The searched fields of all records, folded, in UTF-8, each followed by a byte that UTF-8 does
    // not know: so no text to be found spans two fields.
    std::string m_text;
    std::vector<std::size_t> m_textEnds; ///< by row
    bool m_hasBrokenText = false;        ///< a field has no UTF-8 form

    std::map<QString, Column>
        m_columns; ///< by key; made when first asked for, then kept up to date

    // Dates of the texts in a column, by the format in which they were parsed: the locale's, which
    // may change.
    std::map<QString, std::vector<QDateTime>> m_dates;
};

} // namespace tessaline
