#include "BookmarkList.h"

#include "CameraNames.h"
#include "Names.h"
#include "TimeFormatter.h"

#include <QtCore/QLocale>
#include <QtCore/QStringView>

#include <algorithm>
#include <cmath>
#include <cstring>
#include <iterator>
#include <limits>
#include <optional>
#include <string>
#include <tuple>
#include <utility>

namespace tessaline {

namespace {

/// Returns false if the text can't be a part of any time range, "hh:mm:ss - hh:mm:ss".
bool canOccurInTimeRange(QStringView text)
{
    constexpr QStringView Pattern = u"00:00:00 - 00:00:00";
    const auto fits = [](QChar letter, QChar pattern) {
        return pattern == u'0' ? letter >= u'0' && letter <= u'9' : letter == pattern;
    };
    for (qsizetype i = 0; i + text.size() <= Pattern.size(); ++i) {
        if (std::equal(text.begin(), text.end(), Pattern.begin() + i, fits))
            return true;
    }
    return false;
}

template <typename Predicate>
void keepRows(Rows &rows, Predicate isKept)
{
    rows.erase(std::remove_if(rows.begin(), rows.end(), [&](quint32 row) { return !isKept(row); }),
               rows.end());
}

/// Returns for each distinct text, by its number, the result of the predicate.
template <typename Predicate>
std::vector<char> passing(const TextDictionary &dictionary, Predicate passes)
{
    std::vector<char> result;
    for (const QString &text : dictionary.texts())
        result.push_back(passes(text));
    return result;
}

/// Sorts the elements of the page; the order of the others is unspecified.
template <typename Iterator, typename IsBefore>
void placePage(Iterator begin, Iterator end, Range page, IsBefore isBefore)
{
    const auto first = begin + static_cast<std::ptrdiff_t>(page.first);
    if (first != begin)
        std::nth_element(begin, first, end, isBefore);
    std::partial_sort(first, begin + static_cast<std::ptrdiff_t>(page.end), end, isBefore);
}

/// In single precision and truncated, because the panel's pager computes it so.
int pageCount(std::size_t size, int pageSize)
{
    if (pageSize == 0)
        return 0; // every page is empty
    constexpr auto limit = static_cast<float>(std::numeric_limits<int>::max());
    const float pages = std::ceil(static_cast<float>(size) / static_cast<float>(pageSize));
    return pages >= limit ? std::numeric_limits<int>::max()
                          : static_cast<int>(std::max(pages, -limit));
}

} // namespace

const std::array<BookmarkList::DictionaryField, BookmarkList::RelayPath + 1>
    BookmarkList::dictionaryFields{{{&displayKey::CameraID, &BookmarkRecord::cameraID},
                                    {nullptr, &BookmarkRecord::cameraKey},
                                    {&displayKey::CameraName, &BookmarkRecord::cameraName},
                                    {&displayKey::Creator, &BookmarkRecord::creator},
                                    {&displayKey::DisplayDate, &BookmarkRecord::date},
                                    {&displayKey::Group, &BookmarkRecord::group},
                                    {&displayKey::LocationID, &BookmarkRecord::locationID},
                                    {&displayKey::RelayPath, &BookmarkRecord::relayPath}}};

Range pageRange(std::size_t size, int pageSize, int pageNumber)
{
    if (pageNumber >= pageCount(size, pageSize))
        pageNumber = 0;
    const auto limit = static_cast<qint64>(size);
    const qint64 first = qint64(pageSize) * pageNumber;
    const qint64 end = pageSize < 0 ? limit : first + pageSize;
    return {static_cast<std::size_t>(std::clamp(first, qint64(0), limit)),
            static_cast<std::size_t>(std::clamp(end, qint64(0), limit))};
}

// ---- Records ----

template <typename Action>
void BookmarkList::forEachColumn(Action action)
{
    for (TextDictionary &dictionary : m_dictionaries)
        action(dictionary);
    for (TextColumn *column : {&m_bookmarkIDs, &m_descriptions, &m_foldedDescriptions})
        action(*column);
}

void BookmarkList::append(const QVariantList &serverRecords, CameraNames &names,
                          const std::shared_ptr<TimeFormatter> &formatter)
{
    const std::size_t known = size();
    const auto count = static_cast<std::size_t>(serverRecords.size());
    try {
        forEachColumn([&](auto &column) { column.reserve(count); });
        reserveMore(m_starts, count);
        reserveMore(m_ends, count);
        if (m_formatters.empty() || m_formatters.back().formatter != formatter)
            m_formatters.push_back({known, formatter});
        for (const QVariant &element : serverRecords) {
            BookmarkRecord record = readServerRecord(element.toMap(), names);
            if (!formatter->cacheDate(record)) {
                formatter->format(record);
                m_uncachedDateTimes[static_cast<quint32>(size())] = record.dateTime;
            }
            for (std::size_t i = 0; i < dictionaryFields.size(); ++i)
                m_dictionaries[i].append(record.*dictionaryFields[i].text);
            m_bookmarkIDs.append(record.bookmarkID);
            m_descriptions.append(record.description);
            m_isSearchable &= m_foldedDescriptions.appendFolded(record.description);
            m_ends.push_back(record.end);
            m_starts.push_back(record.start);
        }
    } catch (...) {
        forEachColumn([&](auto &column) { column.truncate(known); });
        m_starts.resize(known);
        m_ends.resize(known);
        // A formatter without rows stays: formatterOf() does not find it.
        for (std::size_t row = known; row < known + count; ++row)
            m_uncachedDateTimes.erase(static_cast<quint32>(row));
        throw;
    }
}

void BookmarkList::clear()
{
    BookmarkList old; // frees the memory; an assigned std::string would keep it
    std::swap(*this, old);
}

BookmarkRecord BookmarkList::record(quint32 row) const
{
    BookmarkRecord record;
    record.start = m_starts[row];
    record.end = m_ends[row];
    formatterOf(row).format(record);
    const auto uncached = m_uncachedDateTimes.find(row);
    if (uncached != m_uncachedDateTimes.end())
        record.dateTime = uncached->second;
    for (std::size_t i = 0; i < dictionaryFields.size(); ++i)
        record.*dictionaryFields[i].text = m_dictionaries[i].at(row);
    record.bookmarkID = m_bookmarkIDs.at(row);
    record.description = m_descriptions.at(row);
    return record;
}

TimeFormatter &BookmarkList::formatterOf(quint32 row) const
{
    Q_ASSERT(row < size());
    const auto next = std::upper_bound(
        m_formatters.cbegin(), m_formatters.cend(), row,
        [](quint32 wanted, const FormatterRun &run) { return wanted < run.firstRow; });
    return *std::prev(next)->formatter;
}

// ---- Filters ----

Rows BookmarkList::rowsInRange(qint64 first, qint64 last) const
{
    // Without a branch: the processor can't predict whether the next bookmark is in the range.
    Rows rows(size());
    std::size_t count = 0;
    for (std::size_t row = 0; row < rows.size(); ++row) {
        rows[count] = static_cast<quint32>(row);
        count += first <= m_starts[row] && m_starts[row] <= last ? 1 : 0;
    }
    rows.resize(count);
    return rows;
}

void BookmarkList::filterByCamera(Rows &rows, const QString &cameraKey) const
{
    const TextDictionary &keys = m_dictionaries[CameraKey];
    const auto isWanted = passing(keys, [&](const QString &key) { return key == cameraKey; });
    keepRows(rows, [&](quint32 row) { return isWanted[keys.numbers()[row]]; });
}

void BookmarkList::filterByText(Rows &rows, const QString &text) const
{
    Q_ASSERT(std::is_sorted(rows.cbegin(), rows.cend()));
    const auto contains = [&](const QString &field) {
        return field.contains(text, Qt::CaseInsensitive);
    };
    const std::vector<quint32> &names = m_dictionaries[CameraName].numbers();
    const std::vector<quint32> &creators = m_dictionaries[Creator].numbers();
    const auto hasName = passing(m_dictionaries[CameraName], contains);
    const auto hasCreator = passing(m_dictionaries[Creator], contains);
    const bool canBeTime = canOccurInTimeRange(text);
    const QByteArray time = canBeTime ? text.toLatin1() : QByteArray();
    std::string needle;
    const bool isSearchable = appendFoldedText(needle, text) && m_isSearchable;
    std::size_t match = 0; // the next row whose description contains the text, once searched for
    bool isSearched = false;
    const auto hasDescription = [&](quint32 row) {
        if (!isSearchable)
            return contains(m_descriptions.at(row));
        if (!isSearched || match < row)
            match = m_foldedDescriptions.nextMatch(needle, row);
        isSearched = true;
        return match == row;
    };
    keepRows(rows, [&](quint32 row) {
        return hasName[names[row]] || hasCreator[creators[row]] || hasDescription(row) ||
               (canBeTime && hasInTimeRange(row, time.constData()));
    });
}

bool BookmarkList::hasInTimeRange(quint32 row, const char *text) const
{
    const auto range = formatterOf(row).timeRange(m_starts[row], m_ends[row]);
    return std::strstr(range.data(), text);
}

// ---- Order ----

void BookmarkList::sort(Rows &rows, const QString &key, bool ascending, Range page)
{
    if (page.first >= page.end)
        return;
    // A time range has no date, so it is sorted by its day.
    if (key == displayKey::DisplayDate || key == displayKey::DisplayTimeRange)
        return sortByNumber(rows, m_dictionaries[Date].numbers(), dates(), ascending, page);
    for (std::size_t i = 0; i < dictionaryFields.size(); ++i) {
        const TextDictionary &dictionary = m_dictionaries[i];
        if (dictionaryFields[i].displayKey && *dictionaryFields[i].displayKey == key)
            return sortByNumber(rows, dictionary.numbers(), dictionary.texts(), ascending, page);
    }
    sortByUniqueText(rows, key, ascending, page);
}

/// Returns the distinct days as dates; texts that can't be parsed are equal. fromString() reads
/// two-digit years as years of the 1900s.
const std::vector<QDateTime> &BookmarkList::dates()
{
    const QString format = QLocale::system().dateFormat(QLocale::ShortFormat);
    if (format != m_parsedFormat) {
        m_parsedDates.clear();
        m_parsedFormat = format;
    }
    const std::vector<QString> &texts = m_dictionaries[Date].texts();
    while (m_parsedDates.size() < texts.size())
        m_parsedDates.push_back(QDateTime::fromString(texts[m_parsedDates.size()], format));
    return m_parsedDates;
}

/// Sorts by a column with few distinct values: sorts the values, and then only the rows of those
/// values that occur on the page.
/// @param values the distinct values by number
template <typename Values>
void BookmarkList::sortByNumber(Rows &rows, const std::vector<quint32> &numberOf,
                                const Values &values, bool ascending, Range page) const
{
    const auto isBefore = [&](quint32 left, quint32 right) {
        return ascending ? values[left] < values[right] : values[right] < values[left];
    };
    std::vector<quint32> occurrences(values.size());
    for (const quint32 row : rows)
        ++occurrences[numberOf[row]];
    std::vector<quint32> order;
    for (quint32 number = 0; number < occurrences.size(); ++number) {
        if (occurrences[number] > 0)
            order.push_back(number);
    }
    std::stable_sort(order.begin(), order.end(), isBefore);

    std::vector<quint32> rankOf(values.size()); // equal values share one
    std::vector<std::size_t> ends;              // by rank: where its rows end
    for (std::size_t i = 0; i < order.size(); ++i) {
        if (i == 0 || isBefore(order[i - 1], order[i]))
            ends.push_back(i > 0 ? ends.back() : 0);
        rankOf[order[i]] = static_cast<quint32>(ends.size() - 1);
        ends.back() += occurrences[order[i]];
    }

    // Rows of lower ranks than those of the page move before them, those of higher ranks behind.
    const auto lowest = std::upper_bound(ends.cbegin(), ends.cend(), page.first) - ends.cbegin();
    const auto highest = std::lower_bound(ends.cbegin(), ends.cend(), page.end) - ends.cbegin();
    const std::size_t begin = lowest > 0 ? ends[std::size_t(lowest - 1)] : 0;
    const std::size_t end = ends[std::size_t(highest)];
    std::size_t next[] = {0, begin, end};
    Rows placed(rows.size());
    for (const quint32 row : rows) {
        const quint32 rank = rankOf[numberOf[row]];
        placed[next[(rank >= lowest ? 1 : 0) + (rank > highest ? 1 : 0)]++] = row;
    }
    rows.swap(placed);
    placePage(rows.begin() + std::ptrdiff_t(begin), rows.begin() + std::ptrdiff_t(end),
              {page.first - begin, page.end - begin}, [&](quint32 left, quint32 right) {
                  return std::tuple(rankOf[numberOf[left]], m_starts[right], left) <
                         std::tuple(rankOf[numberOf[right]], m_starts[left], right);
              });
}

/// Sorts by a field whose texts are mostly distinct.
void BookmarkList::sortByUniqueText(Rows &rows, const QString &key, bool ascending,
                                    Range page) const
{
    std::vector<std::pair<QString, quint32>> entries;
    entries.reserve(rows.size());
    for (const quint32 row : rows)
        entries.emplace_back(displayText(record(row), key), row);
    placePage(entries.begin(), entries.end(), page, [&](const auto &left, const auto &right) {
        const int order = left.first.compare(right.first);
        return std::tuple(ascending ? order : -order, m_starts[right.second], left.second) <
               std::tuple(0, m_starts[left.second], right.second);
    });
    std::transform(entries.cbegin(), entries.cend(), rows.begin(),
                   [](const auto &entry) { return entry.second; });
}

} // namespace tessaline
