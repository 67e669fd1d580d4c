#pragma once

#include <QtCore/QByteArray>
#include <QtCore/QStringList>

#include <deque>

class QIODevice;

namespace workbench {

/// One record of a CSV file.
struct CsvRecord
{
    qint64 line = 0; ///< where it begins, counted from 1
    QStringList fields;
    QString error; ///< why the record can't be read; the fields are empty then
};

/// Why a file that begins with @p start can't be read as CSV at all: its encoding or line ends.
/// Empty for any other file.
QString csvFormatDefect(const QByteArray &start);

/// Reads UTF-8 CSV record by record: fields may be quoted and then hold commas, doubled quotes
/// and line breaks; lines end in LF or CRLF; a byte order mark and empty lines are passed over.
/// A record that can't be read costs its first line only: reading goes on at the next one, so
/// that a missing quote does not swallow the rest of the file.
class CsvReader
{
public:
    static constexpr qsizetype MaxRecordSize = 1 << 20; ///< bytes

    /// @p device is open for reading and outlives the reader.
    explicit CsvReader(QIODevice *device);

    /// False at the end of the file.
    bool next(CsvRecord *record);

    /// Lines and bytes taken from the device so far.
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

} // namespace workbench
