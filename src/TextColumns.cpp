#include "TextColumns.h"

#include <QtCore/QByteArray>

#include <cstring>

namespace tessaline {

namespace {

constexpr char NotUtf8 = '\xff'; ///< a byte that UTF-8 never contains

/// Appends an ASCII text, by far the most frequent kind, without a detour over QByteArray.
/// @return false if the text has other characters; nothing is appended then
template <typename Convert>
bool appendAscii(std::string &bytes, QStringView text, Convert convert)
{
    const std::size_t begin = bytes.size();
    bytes.resize(begin + static_cast<std::size_t>(text.size()));
    char16_t seen = 0;
    char *out = bytes.data() + begin;
    for (const QChar letter : text) {
        seen |= letter.unicode();
        *out++ = static_cast<char>(convert(letter.unicode()));
    }
    if (seen < 0x80)
        return true;
    bytes.resize(begin);
    return false;
}

void appendUtf8(std::string &bytes, const QByteArray &utf8)
{
    bytes.append(utf8.constData(), static_cast<std::size_t>(utf8.size()));
}

} // namespace

bool appendFoldedText(std::string &bytes, QStringView text)
{
    const auto toLower = [](char16_t c) { return c >= u'A' && c <= u'Z' ? c | 0x20 : c; };
    if (appendAscii(bytes, text, toLower))
        return true;
    if (!text.isValidUtf16())
        return false;
    // Folds each code point to one other, as QString::contains() does. QString::toCaseFolded() may
    // fold one to several in a later version of Qt.
    QString folded;
    for (auto letter = text.begin(); letter != text.end(); ++letter) {
        const QChar first = *letter;
        const char32_t codePoint =
            first.isHighSurrogate() ? QChar::surrogateToUcs4(first, *++letter) : first.unicode();
        folded += QStringView(QChar::fromUcs4(QChar::toCaseFolded(codePoint)));
    }
    appendUtf8(bytes, folded.toUtf8());
    return true;
}

void TextDictionary::append(const QString &text)
{
    if (!m_numbers.empty() &&
        IsSame()(at(m_numbers.size() - 1), text)) { // by far the most frequent case
        m_numbers.push_back(m_numbers.back());
        return;
    }
    auto known = m_numberOf.find(text);
    if (known == m_numberOf.end()) {
        m_texts.push_back(text); // first, because a map entry without a text would be invalid
        known = m_numberOf.emplace(text, static_cast<quint32>(m_texts.size() - 1)).first;
    }
    m_numbers.push_back(known->second);
}

void TextColumn::append(const QString &text)
{
    if (text.isNull()) {
        m_bytes += NotUtf8;
    } else if (!appendAscii(m_bytes, text, [](char16_t c) { return c; })) {
        const QByteArray utf8 = text.toUtf8();
        // False for unpaired surrogates and for a byte order mark, which fromUtf8() removes.
        if (QString::fromUtf8(utf8) == text) {
            appendUtf8(m_bytes, utf8);
        } else {
            m_bytes += NotUtf8;
            m_bytes.append(reinterpret_cast<const char *>(text.constData()),
                           static_cast<std::size_t>(text.size()) * sizeof(QChar));
        }
    }
    m_ends.push_back(m_bytes.size());
}

QString TextColumn::at(std::size_t row) const
{
    const std::size_t begin = beginOf(row);
    const std::string_view bytes = std::string_view(m_bytes).substr(begin, m_ends[row] - begin);
    if (bytes.empty() || bytes.front() != NotUtf8)
        return QString::fromUtf8(bytes.data(), static_cast<qsizetype>(bytes.size()));
    if (bytes.size() == 1)
        return {};
    QString text(static_cast<qsizetype>((bytes.size() - 1) / sizeof(QChar)), Qt::Uninitialized);
    std::memcpy(text.data(), bytes.data() + 1, bytes.size() - 1);
    return text;
}

bool TextColumn::appendFolded(const QString &text)
{
    const bool isFolded = appendFoldedText(m_bytes, text);
    m_bytes += NotUtf8; // no match can extend from one row into the next
    m_ends.push_back(m_bytes.size());
    return isFolded;
}

std::size_t TextColumn::nextMatch(std::string_view needle, std::size_t row) const
{
    const std::size_t match = std::string_view(m_bytes).find(needle, beginOf(row));
    if (match == std::string_view::npos)
        return m_ends.size();
    while (m_ends[row] <= match)
        ++row;
    return row;
}

void TextColumn::truncate(std::size_t rows)
{
    m_bytes.resize(beginOf(rows));
    m_ends.resize(rows);
}

} // namespace tessaline
