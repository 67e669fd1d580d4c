#include "BookmarkList.h"

#include "Names.h"
#include "TimeFormatter.h"

#include <QtCore/QHashFunctions>
#include <QtCore/QLocale>
#include <QtCore/QStringView>

#include <algorithm>
#include <iterator>
#include <numeric>
#include <string>
#include <tuple>
#include <utility>

namespace tessaline {

namespace {

/// @return false if no time range, "hh:mm:ss - hh:mm:ss" or a part of it, can contain the text
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

/// For each distinct value whether it passes.
template <typename Column, typename Predicate>
std::vector<char> passing(const Column &column, Predicate passes)
{
    std::vector<char> result;
    for (const auto &value : column.values())
        result.push_back(passes(value));
    return result;
}

/// Puts the elements of the page into their place.
template <typename Iterator, typename IsBefore>
void placePage(Iterator begin, Iterator first, Iterator last, Iterator end, IsBefore isBefore)
{
    if (first != begin)
        std::nth_element(begin, first, end, isBefore);
    std::partial_sort(first, last, end, isBefore);
}

} // namespace

std::size_t BookmarkList::CameraHash::operator()(const Camera &camera) const
{
    return qHashMulti(0, camera.relayPath, camera.cameraID, camera.qualifiedName);
}

bool BookmarkList::IsSameCamera::operator()(const Camera &left, const Camera &right) const
{
    constexpr IsSameText isSame;
    return isSame(left.cameraID, right.cameraID) && isSame(left.relayPath, right.relayPath) &&
           left.qualifiedName == right.qualifiedName;
}

// ---- Records ----

void BookmarkList::append(const QVariantList &serverRecords, const CameraNames &names,
                          const std::shared_ptr<TimeFormatter> &formatter)
{
    const std::size_t known = size();
    try {
        reserve(static_cast<std::size_t>(serverRecords.size()));
        if (m_formatters.empty() || m_formatters.back().formatter != formatter)
            m_formatters.push_back({known, formatter});
        std::unordered_map<QString, quint32, std::hash<QString>, IsSameText> cameras;
        for (const QVariant &element : serverRecords) {
            const BookmarkRecord record = readServerRecord(element.toMap());
            auto camera = cameras.find(record.cameraID);
            if (camera == cameras.end()) {
                const quint32 number = m_cameras.numberOf(names.camera(record.cameraID));
                camera = cameras.emplace(record.cameraID, number).first;
            }
            append(record, camera->second, *formatter);
        }
    } catch (...) {
        truncate(known);
        throw;
    }
}

void BookmarkList::append(const BookmarkRecord &record, quint32 camera, TimeFormatter &formatter)
{
    if (const std::optional<QString> date = formatter.cacheDate(record.start)) {
        m_dates.append(*date);
    } else {
        const TimeFormatter::Texts texts = formatter.format(record.start, record.end);
        m_dates.append(texts.date);
        m_uncachedDateTimes.emplace(static_cast<quint32>(size()), texts.dateTime);
    }
    m_cameras.appendNumber(camera);
    m_creators.append(record.creator);
    m_groups.append(record.group);
    m_locations.append(record.locationID);
    m_bookmarkIDs.append(record.bookmarkID);
    m_descriptions.append(record.description);
    m_foldedDescriptions.append(record.description);
    m_ends.push_back(record.end);
    m_starts.push_back(record.start); // last, as size() counts the starts
}

void BookmarkList::reserve(std::size_t count)
{
    reserveMore(m_starts, count);
    reserveMore(m_ends, count);
    m_cameras.reserve(count);
    for (TextDictionary *column : {&m_creators, &m_groups, &m_locations, &m_dates})
        column->reserve(count);
    for (TextColumn *column : {&m_bookmarkIDs, &m_descriptions})
        column->reserve(count);
    m_foldedDescriptions.reserve(count);
}

void BookmarkList::truncate(std::size_t rows)
{
    m_starts.resize(rows);
    m_ends.resize(rows);
    m_cameras.truncate(rows);
    for (TextDictionary *column : {&m_creators, &m_groups, &m_locations, &m_dates})
        column->truncate(rows);
    for (TextColumn *column : {&m_bookmarkIDs, &m_descriptions})
        column->truncate(rows);
    m_foldedDescriptions.truncate(rows);
    while (!m_formatters.empty() && m_formatters.back().firstRow >= rows)
        m_formatters.pop_back();
    for (auto text = m_uncachedDateTimes.begin(); text != m_uncachedDateTimes.end();)
        text = text->first >= rows ? m_uncachedDateTimes.erase(text) : std::next(text);
}

void BookmarkList::clear()
{
    const BookmarkList old =
        std::move(*this); // a std::string that is only assigned keeps its memory
    *this = {};
}

BookmarkRecord BookmarkList::record(quint32 row) const
{
    TimeFormatter::Texts texts = formatterOf(row).format(m_starts[row], m_ends[row]);
    const auto uncached = m_uncachedDateTimes.find(row);
    const Camera &camera = m_cameras.at(row);

    BookmarkRecord record;
    record.bookmarkID = m_bookmarkIDs.at(row);
    record.cameraID = camera.cameraID;
    record.creator = m_creators.at(row);
    record.description = m_descriptions.at(row);
    record.group = m_groups.at(row);
    record.locationID = m_locations.at(row);
    record.start = m_starts[row];
    record.end = m_ends[row];
    record.relayPath = camera.relayPath;
    record.cameraName = camera.qualifiedName;
    record.date = m_dates.at(row);
    record.dateTime = uncached == m_uncachedDateTimes.end() ? texts.dateTime : uncached->second;
    record.timeRange = texts.timeRange;
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
    // Without a branch, as the processor can't predict whether the next bookmark is in the range.
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
    const auto isWanted =
        passing(m_cameras, [&](const Camera &camera) { return camera.key == cameraKey; });
    keepRows(rows, [&](quint32 row) { return isWanted[m_cameras.numbers()[row]]; });
}

void BookmarkList::filterByText(Rows &rows, const QString &text) const
{
    const auto contains = [&](const QString &field) {
        return field.contains(text, Qt::CaseInsensitive);
    };
    const auto cameras =
        passing(m_cameras, [&](const Camera &camera) { return contains(camera.qualifiedName); });
    const auto creators = passing(m_creators, contains);
    const bool canBeTime = canOccurInTimeRange(text);
    const std::string time = canBeTime ? text.toStdString() : std::string();
    std::string needle;
    const bool isSearchable = appendFolded(needle, text) && m_foldedDescriptions.isSearchable();

    Q_ASSERT(std::is_sorted(rows.cbegin(), rows.cend()));
    std::optional<std::size_t> match; // the next row whose description contains the text
    keepRows(rows, [&](quint32 row) {
        if (cameras[m_cameras.numbers()[row]] || creators[m_creators.numbers()[row]])
            return true;
        if (!isSearchable) {
            if (contains(m_descriptions.at(row)))
                return true;
        } else {
            if (!match || *match < row)
                match = m_foldedDescriptions.nextMatch(needle, row);
            if (*match == row)
                return true;
        }
        return canBeTime &&
               formatterOf(row).timeRange(m_starts[row], m_ends[row]).view().find(time) !=
                   std::string_view::npos;
    });
}

// ---- Order ----

struct BookmarkList::TextKey
{
    const QString &key;
    const TextDictionary BookmarkList::*column;
};

struct BookmarkList::CameraTextKey
{
    const QString &key;
    QString Camera::*text;
};

void BookmarkList::sort(Rows &rows, const QString &key, bool ascending, Range page)
{
    static const TextKey textKeys[] = {{displayKey::Creator, &BookmarkList::m_creators},
                                       {displayKey::Group, &BookmarkList::m_groups},
                                       {displayKey::LocationID, &BookmarkList::m_locations}};
    static const CameraTextKey cameraKeys[] = {{displayKey::CameraID, &Camera::cameraID},
                                               {displayKey::CameraName, &Camera::qualifiedName},
                                               {displayKey::RelayPath, &Camera::relayPath}};
    if (page.first >= page.end)
        return;

    const auto sortBy = [&](const auto &column, const auto &values, auto field) {
        const auto isBefore = [&](quint32 left, quint32 right) {
            return ascending ? field(values[left]) < field(values[right])
                             : field(values[right]) < field(values[left]);
        };
        sortByNumber(rows, column.numbers(), values.size(), isBefore, page);
    };
    const auto itself = [](const auto &value) -> const auto &
    {
        return value;
    };
    // The time range, too, is ordered by its day.
    if (key == displayKey::DisplayDate || key == displayKey::DisplayTimeRange)
        return sortBy(m_dates, dates(), itself);
    for (const TextKey &entry : textKeys) {
        if (entry.key == key)
            return sortBy(this->*entry.column, (this->*entry.column).values(), itself);
    }
    for (const CameraTextKey &entry : cameraKeys) {
        if (entry.key == key) {
            return sortBy(
                m_cameras, m_cameras.values(), [&](const Camera &camera) -> const auto & {
                    return camera.*entry.text;
                });
        }
    }
    sortByUniqueText(rows, key, ascending, page);
}

/// @return the distinct days as dates. A short format with two-digit years gives years of the
/// 1900s,
///         the base year of fromString(); texts that can't be parsed are equal.
const std::vector<QDateTime> &BookmarkList::dates()
{
    const QString format = QLocale::system().dateFormat(QLocale::ShortFormat);
    if (format != m_parsedFormat) {
        m_parsedDates.clear();
        m_parsedFormat = format;
    }
    while (m_parsedDates.size() < m_dates.values().size()) {
        m_parsedDates.push_back(
            QDateTime::fromString(m_dates.values()[m_parsedDates.size()], format));
    }
    return m_parsedDates;
}

/// Sorts by the numbers of a column with few distinct values: these are ordered, and only the rows
/// of the values that the page touches.
/// @param count number of distinct values
/// @param isBefore compares two of them by number
template <typename IsBefore>
void BookmarkList::sortByNumber(Rows &rows, const std::vector<quint32> &numberOf, std::size_t count,
                                IsBefore isBefore, Range page) const
{
    std::vector<quint32> occurrences(count);
    for (const quint32 row : rows)
        ++occurrences[numberOf[row]];
    std::vector<quint32> order;
    for (quint32 number = 0; number < count; ++number) {
        if (occurrences[number] > 0)
            order.push_back(number);
    }
    std::stable_sort(order.begin(), order.end(), isBefore);

    std::vector<quint32> rankOf(count); // equal values share one
    std::vector<std::size_t> ends;      // by rank: where its rows end
    for (std::size_t i = 0; i < order.size(); ++i) {
        if (i == 0 || isBefore(order[i - 1], order[i]))
            ends.push_back(i > 0 ? ends.back() : 0);
        rankOf[order[i]] = static_cast<quint32>(ends.size() - 1);
        ends.back() += occurrences[order[i]];
    }

    // Rows of lower ranks than those of the page move before them, those of higher ranks behind.
    const auto lowest = std::upper_bound(ends.cbegin(), ends.cend(), page.first) - ends.cbegin();
    const auto highest = std::lower_bound(ends.cbegin(), ends.cend(), page.end) - ends.cbegin();
    const std::size_t touchedBegin = lowest > 0 ? ends[std::size_t(lowest - 1)] : 0;
    const std::size_t touchedEnd = ends[std::size_t(highest)];
    std::size_t next[] = {0, touchedBegin, touchedEnd};
    Rows placed(rows.size());
    for (const quint32 row : rows) {
        const quint32 rank = rankOf[numberOf[row]];
        placed[next[(rank >= lowest ? 1 : 0) + (rank > highest ? 1 : 0)]++] = row;
    }
    rows.swap(placed);

    const auto at = [&](std::size_t place) { return rows.begin() + std::ptrdiff_t(place); };
    placePage(at(touchedBegin), at(page.first), at(page.end), at(touchedEnd),
              [&](quint32 left, quint32 right) {
                  return std::tuple(rankOf[numberOf[left]], m_starts[right], left) <
                         std::tuple(rankOf[numberOf[right]], m_starts[left], right);
              });
}

/// Sorts by a field of which nearly each bookmark has its own text.
void BookmarkList::sortByUniqueText(Rows &rows, const QString &key, bool ascending,
                                    Range page) const
{
    struct Entry
    {
        QString text;
        quint32 row;
    };
    std::vector<Entry> entries;
    entries.reserve(rows.size());
    for (const quint32 row : rows)
        entries.push_back({uniqueText(row, key), row});
    const auto at = [&](std::size_t place) { return entries.begin() + std::ptrdiff_t(place); };
    placePage(entries.begin(), at(page.first), at(page.end), entries.end(),
              [&](const Entry &left, const Entry &right) {
                  const int order = left.text.compare(right.text);
                  return std::tuple(ascending ? order : -order, m_starts[right.row], left.row) <
                         std::tuple(0, m_starts[left.row], right.row);
              });
    std::transform(at(page.first), at(page.end), rows.begin() + std::ptrdiff_t(page.first),
                   [](const Entry &entry) { return entry.row; });
}

/// @return the text of a field without a dictionary; empty for a key that no record has
QString BookmarkList::uniqueText(quint32 row, const QString &key) const
{
    if (key == displayKey::BookmarkID)
        return m_bookmarkIDs.at(row);
    if (key == displayKey::Description)
        return m_descriptions.at(row);
    if (key == displayKey::StartTimestamp)
        return QString::number(m_starts[row]);
    if (key == displayKey::EndTimestamp)
        return QString::number(m_ends[row]);
    if (key == displayKey::DisplayDateTime)
        return record(row).dateTime;
    return {};
}

} // namespace tessaline
