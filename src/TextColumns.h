#pragma once

#include <QtCore/QHashFunctions>
#include <QtCore/QString>

#include <algorithm>
#include <cstddef>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

// Columns of texts, one text for each row, extended at the end only. truncate() removes the rows
// of an append() that threw; it allocates no memory.

namespace tessaline {

/// Reserves space for @p count more elements. At least doubles the capacity: otherwise each of many
/// short answers would copy the column.
template <typename Value>
void reserveMore(std::vector<Value> &column, std::size_t count)
{
    if (column.capacity() - column.size() < count)
        column.reserve(std::max(column.size() + count, 2 * column.size()));
}

/// A column whose texts repeat: each distinct text is stored once and has a number.
class TextDictionary
{
public:
    void append(const QString &text);
    void reserve(std::size_t count) { reserveMore(m_numbers, count); }
    /// Removes rows at the end. Their texts stay: a number without a row does no harm.
    void truncate(std::size_t rows) { m_numbers.resize(rows); }

    const QString &at(std::size_t row) const { return m_texts[m_numbers[row]]; }
    const std::vector<quint32> &numbers() const { return m_numbers; } ///< by row
    const std::vector<QString> &texts() const { return m_texts; }     ///< by number

private:
    /// Distinguishes null from empty texts, which are equal for QString but not for QML and host.
    struct IsSame
    {
        bool operator()(const QString &left, const QString &right) const
        {
            return left.isNull() == right.isNull() && left == right;
        }
    };

    std::vector<quint32> m_numbers;
    std::vector<QString> m_texts;
    std::unordered_map<QString, quint32, std::hash<QString>, IsSame> m_numberOf;
};

/// A column of mostly distinct texts, stored one after the other as bytes.
class TextColumn
{
public:
    /// Appends a text that at() returns unchanged, also if it is null or has unpaired surrogates.
    void append(const QString &text);
    void reserve(std::size_t count) { reserveMore(m_ends, count); }
    void truncate(std::size_t rows);
    QString at(std::size_t row) const;

    /// Appends a text, folded, for nextMatch(); at() can't return it.
    /// @return false if the text has no UTF-8 form, so that nextMatch() can't find it
    bool appendFolded(const QString &text);
    /// @param needle not empty; folded by appendFoldedText()
    /// @return the first row from @p row on that contains the needle, or the number of rows
    std::size_t nextMatch(std::string_view needle, std::size_t row) const;

private:
    std::size_t beginOf(std::size_t row) const { return row > 0 ? m_ends[row - 1] : 0; }

    std::string m_bytes;
    std::vector<std::size_t> m_ends; ///< by row, positions in m_bytes
};

/// Appends the case-folded text in UTF-8.
/// @return false if the text has no UTF-8 form; nothing is appended then
bool appendFoldedText(std::string &bytes, QStringView text);

} // namespace tessaline
