#pragma once

#include <QtCore/QString>

#include <algorithm>
#include <cstddef>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

// Columns of a table: one value for each row, in order, extended at the end only. After an
// exception from append(), truncate() restores the rows before it; it allocates nothing.

namespace tessaline {

/// Makes room for @p count more elements. At least doubles the room: many short answers must not
/// copy the column each time.
template <typename Value>
void reserveMore(std::vector<Value> &column, std::size_t count)
{
    if (column.capacity() - column.size() < count)
        column.reserve(std::max(column.size() + count, 2 * column.size()));
}

/// Null and empty texts are equal for QString; QML and the host see the difference.
struct IsSameText
{
    bool operator()(const QString &left, const QString &right) const
    {
        return left.isNull() == right.isNull() && left == right;
    }
};

/// A column whose values repeat: each distinct value is stored once and has a number.
template <typename Value, typename Hash = std::hash<Value>, typename IsEqual = std::equal_to<Value>>
class DictionaryColumn
{
public:
    void append(const Value &value) { appendNumber(numberOf(value)); }
    void appendNumber(quint32 number) { m_numbers.push_back(number); }
    void reserve(std::size_t count) { reserveMore(m_numbers, count); }
    /// Keeps the values of the removed rows: a number without a row does no harm.
    void truncate(std::size_t rows) { m_numbers.resize(rows); }

    /// @return the number of the value, which is added if it is new
    quint32 numberOf(const Value &value)
    {
        auto known = m_numberOf.find(value);
        if (known == m_numberOf.end()) {
            const auto number = static_cast<quint32>(m_values.size());
            m_values.push_back(value); // first: without a value the number would be used twice
            known = m_numberOf.emplace(value, number).first;
        }
        return known->second;
    }

    const Value &at(std::size_t row) const { return m_values[m_numbers[row]]; }
    const std::vector<quint32> &numbers() const { return m_numbers; } ///< by row
    const std::vector<Value> &values() const { return m_values; }     ///< by number

private:
    std::vector<quint32> m_numbers;
    std::vector<Value> m_values;
    std::unordered_map<Value, quint32, Hash, IsEqual> m_numberOf;
};

using TextDictionary = DictionaryColumn<QString, std::hash<QString>, IsSameText>;

/// A column of texts that hardly repeat, stored one after the other.
class TextColumn
{
public:
    void append(const QString &text);
    void reserve(std::size_t count) { reserveMore(m_ends, count); }
    void truncate(std::size_t rows);

    /// @return exactly the appended text: null stays null, and unpaired surrogates survive
    QString at(std::size_t row) const;

private:
    std::string m_bytes;
    std::vector<std::size_t> m_ends; ///< by row, positions in m_bytes
};

/// A column of texts prepared for a case-insensitive search.
class FoldedColumn
{
public:
    void append(const QString &text);
    void reserve(std::size_t count) { reserveMore(m_ends, count); }
    void truncate(std::size_t rows);

    /// @return false if a text has no UTF-8 form; nextMatch() would miss it
    bool isSearchable() const { return m_isSearchable; }

    /// @param needle the result of folded()
    /// @return the first row from @p row on whose text contains the needle, or the number of rows
    std::size_t nextMatch(std::string_view needle, std::size_t row) const;

private:
    std::string m_bytes;
    std::vector<std::size_t> m_ends; ///< by row, positions in m_bytes
    bool m_isSearchable = true;
};

/// Appends a text, folded as a case-insensitive search compares it, in UTF-8.
/// @return false, and nothing is appended, if the text has no UTF-8 form
bool appendFolded(std::string &bytes, QStringView text);

} // namespace tessaline
