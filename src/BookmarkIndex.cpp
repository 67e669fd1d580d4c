#include "BookmarkIndex.h"

#include "CameraNames.h"
#include "MapFields.h"
#include "Names.h"

#include <QtCore/QLocale>
#include <QtCore/QStringView>

#include <algorithm>
#include <array>
#include <iterator>
#include <numeric>
#include <string_view>
#include <tuple>
#include <utility>

namespace tessaline {

namespace {

constexpr char FieldEnd = '\xff';
constexpr std::size_t MostColumns = 16;

const std::array searchedKeys{&displayKey::CameraName, &displayKey::Creator,
                              &displayKey::Description, &displayKey::DisplayTimeRange};

/// The text, valid UTF-16, as a case-insensitive search compares it: each code point folded to one
/// other. Not by QString::toCaseFolded(), which may learn to fold a sharp s to two letters; the
/// search will not.
QString folded(QStringView text)
{
    QString result;
    for (auto letter = text.begin(); letter != text.end(); ++letter) {
        const QChar first = *letter;
        const char32_t codePoint =
            first.isHighSurrogate() ? QChar::surrogateToUcs4(first, *++letter) : first.unicode();
        result += QStringView(QChar::fromUcs4(QChar::toCaseFolded(codePoint)));
    }
    return result;
}

/// Appends the text folded and in UTF-8. False, and nothing is appended, for a text that has no
/// UTF-8 form.
bool appendFolded(std::string &bytes, QStringView text)
{
    // Nearly all texts are of ASCII characters alone; those are written directly.
    const std::size_t begin = bytes.size();
    bytes.resize(begin + static_cast<std::size_t>(text.size()));
    char16_t seen = 0;
    auto out = bytes.begin() + static_cast<std::ptrdiff_t>(begin);
    for (const QChar c : text) {
        const char16_t letter = c.unicode();
        seen |= letter;
        *out++ = static_cast<char>(letter >= u'A' && letter <= u'Z' ? letter | 0x20 : letter);
    }
    if (seen < 0x80)
        return true;
    bytes.resize(begin);
    if (!text.isValidUtf16())
        return false;
    bytes += folded(text).toStdString();
    return true;
}

bool containsText(const QVariantMap &record, const QString &text)
{
    return std::any_of(std::begin(searchedKeys), std::end(searchedKeys), [&](const QString *key) {
        return record.value(*key).toString().contains(text, Qt::CaseInsensitive);
    });
}

} // namespace

void BookmarkIndex::clear()
{
    std::map<QString, Column> columns = std::move(m_columns);
    for (auto &[key, column] : columns)
        column = {};
    *this = {};
    m_columns = std::move(columns);
}

// Texts and cameras that have got a number keep it; that no row has it does no harm.
void BookmarkIndex::truncate(std::size_t count)
{
    m_text.resize(textStart(static_cast<quint32>(count)));
    m_starts.resize(count);
    m_cameras.resize(count);
    m_textEnds.resize(count);
    for (auto &[key, column] : m_columns)
        column.textOf.resize(count);
}

void BookmarkIndex::append(const QVariantMap &record)
{
    // All fields are named, so that none needs to be skipped by comparing.
    const auto [bookmarkID, cameraID, cameraName, creator, description, date, dateTime, timeRange,
                end, group, locationID, relayPath, start] = valuesOf(record, displayRecordKeys);
    m_starts.push_back(start->toLongLong());

    const auto nextNumber = static_cast<quint32>(m_cameraNumbers.size());
    const QString camera = cameraKey(relayPath->toString(), cameraID->toString());
    m_cameras.push_back(m_cameraNumbers.try_emplace(camera, nextNumber).first->second);

    for (const QVariant *field : {cameraName, creator, description, timeRange})
        appendText(field->toString());
    m_textEnds.push_back(m_text.size());

    for (auto &[key, column] : m_columns)
        column.append(record.value(key).toString());
}

void BookmarkIndex::appendText(const QString &text)
{
    if (!appendFolded(m_text, text))
        m_hasBrokenText = true;
    m_text.push_back(FieldEnd);
}

std::size_t BookmarkIndex::textStart(quint32 row) const
{
    return row > 0 ? m_textEnds[row - 1] : 0;
}

Rows BookmarkIndex::startingBetween(qint64 first, qint64 last) const
{
    // Written without a branch: whether the next record belongs to it can't be guessed.
    Rows rows(m_starts.size());
    std::size_t count = 0;
    for (std::size_t row = 0; row < m_starts.size(); ++row) {
        rows[count] = static_cast<quint32>(row);
        count += first <= m_starts[row] && m_starts[row] <= last ? 1 : 0;
    }
    rows.resize(count);
    return rows;
}

void BookmarkIndex::keepCamera(Rows &rows, const QString &cameraKey) const
{
    const auto camera = m_cameraNumbers.find(cameraKey);
    if (camera == m_cameraNumbers.cend()) {
        rows.clear();
        return;
    }
    const auto isOther = [&](quint32 row) { return m_cameras[row] != camera->second; };
    rows.erase(std::remove_if(rows.begin(), rows.end(), isOther), rows.end());
}

void BookmarkIndex::keepText(Rows &rows, const QString &text, const QVariantList &list) const
{
    std::string searched;
    if (!appendFolded(searched, text) || m_hasBrokenText) {
        const auto lacksText = [&](quint32 row) {
            return !containsText(list.at(row).toMap(), text);
        };
        rows.erase(std::remove_if(rows.begin(), rows.end(), lacksText), rows.end());
        return;
    }

    const std::string_view haystack(m_text);
    auto kept = rows.begin();
    for (auto row = rows.cbegin(); row != rows.cend();) {
        // One pass over all texts: the next hit may lie in a record much further on.
        const std::size_t hit = haystack.find(searched, textStart(*row));
        if (hit == std::string_view::npos)
            break;
        row = std::find_if(row, rows.cend(), [&](quint32 r) { return m_textEnds[r] > hit; });
        if (row != rows.cend() && textStart(*row) <= hit)
            *kept++ = *row++;
    }
    rows.erase(kept, rows.end());
}

void BookmarkIndex::Column::append(const QString &text)
{
    auto number = numbers.find(text);
    if (number == numbers.end()) {
        const auto nextNumber = static_cast<quint32>(texts.size());
        texts.append(text); // first: a number without a text would be given to the next text too
        number = numbers.emplace(text, nextNumber).first;
    }
    textOf.push_back(number->second);
}

const BookmarkIndex::Column &BookmarkIndex::column(const QString &key, const QVariantList &list)
{
    const auto known = m_columns.find(key);
    if (known != m_columns.cend())
        return known->second;
    // A panel has a handful of group keys. Whoever asks for ever new ones shall not fill the
    // memory.
    if (m_columns.size() >= MostColumns)
        m_columns.clear();
    Column column;
    for (const QVariant &record : list)
        column.append(record.toMap().value(key).toString());
    return m_columns.emplace(key, std::move(column)).first->second;
}

/// The texts of a column of dates as dates. A locale whose short format has two-digit years gets
/// years of the 1900s, which is the base year that fromString() takes when it is not told another;
/// some locales' own texts can't be parsed at all, and are all equal then.
const std::vector<QDateTime> &BookmarkIndex::parsedDates(const Column &column)
{
    const QString format = QLocale::system().dateFormat(QLocale::ShortFormat);
    std::vector<QDateTime> &dates = m_dates[format];
    for (auto number = static_cast<qsizetype>(dates.size()); number < column.texts.size(); ++number)
        dates.push_back(QDateTime::fromString(column.texts.at(number), format));
    return dates;
}

/// For each text of the column its place in the order; texts that compare equal share one. Texts
/// that do not occur have no place that means anything.
std::vector<quint32> BookmarkIndex::ranks(const Column &column,
                                          const std::vector<quint32> &occurring, bool byDate,
                                          bool ascending)
{
    std::vector<quint32> order = occurring;
    std::vector<quint32> rankOf(static_cast<std::size_t>(column.texts.size()));
    const auto rankBy = [&](const auto &values) {
        const auto goesBefore = [&](quint32 left, quint32 right) {
            return ascending ? values[left] < values[right] : values[right] < values[left];
        };
        std::stable_sort(order.begin(), order.end(), goesBefore);
        quint32 rank = 0;
        for (std::size_t i = 1; i < order.size(); ++i) { // the first has rank 0 already
            if (goesBefore(order[i - 1], order[i]))
                ++rank;
            rankOf[order[i]] = rank;
        }
    };
    if (byDate)
        rankBy(parsedDates(column));
    else
        rankBy(column.texts);
    return rankOf;
}

void BookmarkIndex::sort(Rows &rows, const QString &key, bool ascending, Slice slice,
                         const QVariantList &list)
{
    if (slice.first >= slice.second)
        return;
    // The time range too is put in order by its day.
    const bool byDate = key == displayKey::DisplayDate || key == displayKey::DisplayTimeRange;
    const Column &column = this->column(byDate ? displayKey::DisplayDate : key, list);

    std::vector<quint32> occurrences(static_cast<std::size_t>(column.texts.size()));
    for (const quint32 row : rows)
        ++occurrences[column.textOf[row]];
    std::vector<quint32> occurring;
    for (quint32 text = 0; text < occurrences.size(); ++text) {
        if (occurrences[text] > 0)
            occurring.push_back(text);
    }
    const std::vector<quint32> rankOf = ranks(column, occurring, byDate, ascending);
    std::vector<std::size_t> ends(occurring.size()); // by rank: where its rows end
    for (const quint32 text : occurring)
        ends[rankOf[text]] += occurrences[text];
    std::partial_sum(ends.begin(), ends.end(), ends.begin());

    // Only the rows of the ranks that the slice touches are put into order; those of lower ranks go
    // before them and those of higher ranks behind, as they come.
    const auto lowest = std::upper_bound(ends.cbegin(), ends.cend(), slice.first) - ends.cbegin();
    const auto highest = std::lower_bound(ends.cbegin(), ends.cend(), slice.second) - ends.cbegin();
    const std::size_t touchedBegin = lowest > 0 ? ends[std::size_t(lowest - 1)] : 0;
    const std::size_t touchedEnd = ends[std::size_t(highest)];
    std::size_t next[] = {0, touchedBegin, touchedEnd};
    Rows placed(rows.size());
    for (const quint32 row : rows) {
        const quint32 rank = rankOf[column.textOf[row]];
        placed[next[(rank >= lowest ? 1 : 0) + (rank > highest ? 1 : 0)]++] = row;
    }
    rows.swap(placed);

    const auto at = [&](std::size_t place) { return rows.begin() + std::ptrdiff_t(place); };
    const auto goesBefore = [&](quint32 left, quint32 right) {
        // By rank; of one rank, the one that starts later.
        return std::tuple(rankOf[column.textOf[left]], m_starts[right], left) <
               std::tuple(rankOf[column.textOf[right]], m_starts[left], right);
    };
    if (slice.first > touchedBegin)
        std::nth_element(at(touchedBegin), at(slice.first), at(touchedEnd), goesBefore);
    std::partial_sort(at(slice.first), at(slice.second), at(touchedEnd), goesBefore);
}

} // namespace tessaline
