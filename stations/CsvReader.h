#pragma once

#include <QtCore/QByteArray>
#include <QtCore/QStringList>

#include <deque>

class QIODevice;

namespace stations {

/// One record of a CSV file.
struct CsvRecord
{
    qint64 line = 0; ///< number of its first line, from 1
    QStringList fields;
    QString error; ///< message if the record can't be read; the fields are empty then
};

/// Returns a message if the encoding or the line ends of a file are not supported, or an empty
/// text.
/// @param start the first bytes of the file
QString csvFormatDefect(const QByteArray &start);

/// Reads UTF-8 CSV record by record. Quoted fields may contain commas, doubled quotes and line
/// breaks; lines end in LF or CRLF; a byte order mark and empty lines are ignored. After a record
/// that can't be read, the reader continues at its second line, so that a missing quote does not
/// lose the rest of the file.
class CsvReader
{
public:
    static constexpr qsizetype MaxRecordSize = 1 << 20; ///< bytes

    /// @param device open for reading; not owned, must outlive the reader
    explicit CsvReader(QIODevice *device);

    /// Reads the next record. Returns false at the end of the file.
    bool next(CsvRecord *record);

    /// @return lines and bytes read from the device so far
    qint64 linesRead() const { return m_linesRead; }
    qint64 bytesRead() const { return m_bytesRead; }

private:
    bool readLine(QByteArray *line);
    void skipRestOfLine();
    bool readRecord(QByteArray *text, CsvRecord *record);

    QIODevice *m_device;
    std::deque<QByteArray> m_pushedBack;
    qint64 m_line = 0;
    qint64 m_linesRead = 0;
    qint64 m_bytesRead = 0;
};

} // namespace stations
