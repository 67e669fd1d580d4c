#include "Columns.h"

#include <QtCore/QByteArray>

#include <cstring>

namespace tessaline {

namespace {

/// Bytes that UTF-8 never contains.
constexpr char NotUtf8 = '\xff';
constexpr char FieldEnd = '\xff';

/// @return the position after the text of the row before, where the row begins
std::size_t beginOf(const std::vector<std::size_t> &ends, std::size_t row)
{
    return row > 0 ? ends[row - 1] : 0;
}

/// Nearly all texts are ASCII, for which this is the whole work.
/// @return false, and nothing is appended, if the text has other characters
template <typename Convert>
bool appendAscii(std::string &bytes, QStringView text, Convert convert)
{
    const std::size_t begin = bytes.size();
    const auto count = static_cast<std::size_t>(text.size());
    bytes.resize(begin + count);
    char16_t seen = 0;
    char *out = bytes.data() + begin;
    for (const char16_t letter : std::u16string_view(text.utf16(), count)) {
        seen |= letter;
        *out++ = convert(letter);
    }
    if (seen < 0x80)
        return true;
    bytes.resize(begin);
    return false;
}

/// Folds each code point to one other. QString::toCaseFolded() may map one to several in a later
/// version of Qt; QString::contains() does not.
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

} // namespace

bool appendFolded(std::string &bytes, QStringView text)
{
    const auto toLower = [](char16_t letter) {
        return static_cast<char>(letter >= u'A' && letter <= u'Z' ? letter | 0x20 : letter);
    };
    if (appendAscii(bytes, text, toLower))
        return true;
    if (!text.isValidUtf16())
        return false;
    const QByteArray utf8 = folded(text).toUtf8();
    bytes.append(utf8.constData(), static_cast<std::size_t>(utf8.size()));
    return true;
}

void TextColumn::append(const QString &text)
{
    const auto toChar = [](char16_t letter) { return static_cast<char>(letter); };
    if (text.isNull()) {
        m_bytes += NotUtf8;
    } else if (!appendAscii(m_bytes, text, toChar)) {
        const QByteArray utf8 = text.toUtf8();
        // Not so for unpaired surrogates, nor for a byte order mark, which fromUtf8() removes.
        if (QString::fromUtf8(utf8) == text) {
            m_bytes.append(utf8.constData(), static_cast<std::size_t>(utf8.size()));
        } else {
            m_bytes += NotUtf8;
            m_bytes.append(reinterpret_cast<const char *>(text.constData()),
                           static_cast<std::size_t>(text.size()) * sizeof(QChar));
        }
    }
    m_ends.push_back(m_bytes.size());
}

void TextColumn::truncate(std::size_t rows)
{
    m_bytes.resize(beginOf(m_ends, rows));
    m_ends.resize(rows);
}

QString TextColumn::at(std::size_t row) const
{
    const std::size_t begin = beginOf(m_ends, row);
    const std::string_view bytes = std::string_view(m_bytes).substr(begin, m_ends[row] - begin);
    if (bytes.empty() || bytes.front() != NotUtf8)
        return QString::fromUtf8(bytes.data(), static_cast<qsizetype>(bytes.size()));
    QString text;
    if (bytes.size() > 1) {
        text.resize(static_cast<qsizetype>((bytes.size() - 1) / sizeof(QChar)));
        std::memcpy(text.data(), bytes.data() + 1, bytes.size() - 1);
    }
    return text;
}

void FoldedColumn::append(const QString &text)
{
    if (!appendFolded(m_bytes, text))
        m_isSearchable = false;
    m_bytes += FieldEnd; // no match can extend from one row into the next
    m_ends.push_back(m_bytes.size());
}

void FoldedColumn::truncate(std::size_t rows)
{
    m_bytes.resize(beginOf(m_ends, rows));
    m_ends.resize(rows);
}

std::size_t FoldedColumn::nextMatch(std::string_view needle, std::size_t row) const
{
    const std::size_t match = std::string_view(m_bytes).find(needle, beginOf(m_ends, row));
    if (match == std::string_view::npos)
        return m_ends.size();
    while (m_ends[row] <= match)
        ++row;
    return row;
}

} // namespace tessaline
