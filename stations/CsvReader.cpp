#include "CsvReader.h"

#include <QtCore/QIODevice>
#include <QtCore/QStringDecoder>

#include <vector>

namespace stations {

namespace {

void chopLineEnd(QByteArray *text)
{
    if (text->endsWith('\n'))
        text->chop(1);
    if (text->endsWith('\r'))
        text->chop(1);
}

/// Removes the first field and its comma from @p rest. Returns false for a misplaced quote.
bool takeField(QByteArrayView *rest, QByteArray *field, bool *isLast)
{
    field->clear();
    qsizetype at = 0;
    if (rest->startsWith('"')) {
        at = 1;
        for (;;) {
            const qsizetype quote = rest->indexOf('"', at);
            if (quote < 0)
                return false;
            field->append(rest->sliced(at, quote - at));
            at = quote + 1;
            if (at == rest->size() || rest->at(at) != '"')
                break;
            field->append('"');
            ++at;
        }
        if (at < rest->size() && rest->at(at) != ',')
            return false;
    } else {
        const qsizetype comma = rest->indexOf(',');
        at = comma < 0 ? rest->size() : comma;
        *field = rest->first(at).toByteArray();
        if (field->contains('"'))
            return false;
    }
    *isLast = at == rest->size();
    if (!*isLast)
        *rest = rest->sliced(at + 1);
    return true;
}

/// Splits a record into fields. Returns the reason if it can't be read, or an empty text.
QString split(QByteArrayView rest, QStringList *fields)
{
    QByteArray field;
    bool isLast = false;
    while (!isLast) {
        if (!takeField(&rest, &field, &isLast)) {
            fields->clear();
            return QStringLiteral("a quote is missing or at the wrong place");
        }
        QStringDecoder decoder(QStringDecoder::Utf8, QStringDecoder::Flag::Stateless);
        const QString text = decoder(field);
        if (decoder.hasError()) {
            fields->clear();
            return QStringLiteral("the text is not UTF-8");
        }
        fields->append(text);
    }
    return QString();
}

} // namespace

QString csvFormatDefect(const QByteArray &start)
{
    const bool hasLineFeed = start.contains('\n');
    const QByteArray firstLine = start.left(start.indexOf('\n'));
    if (start.startsWith("\xFF\xFE") || start.startsWith("\xFE\xFF") || firstLine.contains('\0'))
        return QStringLiteral("the text is UTF-16; save the file as UTF-8");
    if (start.contains('\r') && !hasLineFeed)
        return QStringLiteral("lines end in CR alone; save the file with LF or CR LF");
    return QString();
}

CsvReader::CsvReader(QIODevice *device)
    : m_device(device)
{
}

bool CsvReader::next(CsvRecord *record)
{
    QByteArray text;
    do {
        *record = CsvRecord();
        if (!readRecord(&text, record))
            return false;
    } while (text.isEmpty() && record->error.isEmpty());
    return true;
}

/// Joins lines while a quote is open, that is, while the number of quotes is odd: doubled quotes
/// keep it even.
bool CsvReader::readRecord(QByteArray *text, CsvRecord *record)
{
    text->clear();
    std::vector<QByteArray> lines;
    bool quoteIsOpen = false;
    QByteArray line;
    do {
        if (!readLine(&line))
            break;
        quoteIsOpen = quoteIsOpen != (line.count('"') % 2 != 0);
        lines.push_back(line);
        text->append(line);
    } while (quoteIsOpen && text->size() <= MaxRecordSize);
    if (lines.empty())
        return false;

    record->line = m_line + 1;
    if (text->size() > MaxRecordSize && lines.size() == 1) {
        record->error =
            QStringLiteral("the line is longer than %1 bytes").arg(qint64(MaxRecordSize));
    } else {
        chopLineEnd(text);
        record->error = split(*text, &record->fields);
    }
    if (!record->error.isEmpty()) {
        m_pushedBack.insert(m_pushedBack.begin(), lines.begin() + 1, lines.end());
        lines.resize(1);
    }
    m_line += static_cast<qint64>(lines.size());
    return true;
}

bool CsvReader::readLine(QByteArray *line)
{
    if (!m_pushedBack.empty()) {
        *line = m_pushedBack.front();
        m_pushedBack.pop_front();
        return true;
    }
    *line = m_device->readLine(MaxRecordSize + 2);
    if (line->isEmpty())
        return false;
    m_bytesRead += line->size();
    if (line->size() > MaxRecordSize && !line->endsWith('\n'))
        skipRestOfLine();
    if (m_linesRead++ == 0 && line->startsWith("\xEF\xBB\xBF"))
        line->remove(0, 3);
    return true;
}

void CsvReader::skipRestOfLine()
{
    QByteArray part;
    do {
        part = m_device->readLine(MaxRecordSize + 2);
        m_bytesRead += part.size();
    } while (!part.isEmpty() && !part.endsWith('\n'));
}

} // namespace stations
