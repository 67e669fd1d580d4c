#include "CsvImport.h"

#include "CsvReader.h"
#include "RecordingPlan.h"
#include "StationNetwork.h"

#include <QtCore/QDateTime>
#include <QtCore/QDir>
#include <QtCore/QFile>
#include <QtCore/QHash>
#include <QtCore/QSet>
#include <QtCore/QTimeZone>
#include <QtCore/QtNumeric>

#include <algorithm>

namespace stations {

namespace {

constexpr qint64 LinesBetweenProgress = 1'000;
constexpr qint64 LookedAtFirst = 1 << 16; ///< bytes

/// Maps the values of a bookmark to the columns of a file.
class Columns
{
public:
    enum Column {
        CameraName,
        Start,
        End,
        StartOffset,
        EndOffset,
        Event,
        Description,
        RelayPath,
        Creator,
        Group
    };

    /// Reads the header line. Returns the reason why it is not usable, or an empty text.
    QString read(const QStringList &header)
    {
        QStringList found;
        for (const QString &name : header)
            found.append(name.trimmed().toLower());
        m_fieldCount = found.size();
        m_indexes.clear();
        const QStringList known = names();
        for (const QString &name : known) {
            if (found.count(name) > 1)
                return QStringLiteral("the column \"%1\" occurs twice; remove one").arg(name);
            m_indexes.append(found.indexOf(name));
        }
        for (const char separator : {';', '\t', '|'}) {
            if (header.size() == 1 && found.constFirst().contains(QLatin1Char(separator)))
                return QStringLiteral("the columns are separated by %1; separate them by commas")
                    .arg(separator == '\t' ? QStringLiteral("tabs")
                                           : QStringLiteral("\"%1\"").arg(QLatin1Char(separator)));
        }
        if (!has(CameraName))
            return QStringLiteral("the column \"camera\" is missing; add it to the header line");
        const bool hasTimes = has(Start) && has(End);
        const bool hasOffsets = has(StartOffset) && has(EndOffset);
        if (hasTimes == hasOffsets)
            return QStringLiteral("the header line must have either the columns \"start\" and"
                                  " \"end\" or \"start_offset_ms\" and \"end_offset_ms\"");
        return QString();
    }

    bool has(Column column) const { return m_indexes.at(column) >= 0; }
    qsizetype fieldCount() const { return m_fieldCount; }

    /// Returns the value of a column, or an empty text if the file lacks the column.
    QString value(const QStringList &fields, Column column) const
    {
        return has(column) ? fields.at(m_indexes.at(column)) : QString();
    }

private:
    /// In the order of Column.
    static QStringList names()
    {
        return {QStringLiteral("camera"),        QStringLiteral("start"),
                QStringLiteral("end"),           QStringLiteral("start_offset_ms"),
                QStringLiteral("end_offset_ms"), QStringLiteral("event"),
                QStringLiteral("description"),   QStringLiteral("station"),
                QStringLiteral("creator"),       QStringLiteral("group")};
    }

    QList<qsizetype> m_indexes;
    qsizetype m_fieldCount = 0;
};

std::optional<qint64> millisecondsOf(const QString &text)
{
    bool ok = false;
    const qint64 milliseconds = text.toLongLong(&ok);
    return ok && milliseconds >= 0 ? std::optional<qint64>(milliseconds) : std::nullopt;
}

std::optional<qint64> timeOf(const QString &text)
{
    if (const std::optional<qint64> milliseconds = millisecondsOf(text))
        return milliseconds;
    // A time without a zone is UTC, so that a file gives the same times on every machine. Try UTC
    // first: the machine's own zone may skip that time.
    QDateTime time = QDateTime::fromString(text + QLatin1Char('Z'), Qt::ISODateWithMs);
    if (!time.isValid())
        time = QDateTime::fromString(text, Qt::ISODateWithMs);
    if (!time.isValid())
        return std::nullopt;
    if (time.timeSpec() == Qt::LocalTime) // a day alone
        time = QDateTime(time.date(), time.time(), QTimeZone::utc());
    const qint64 milliseconds = time.toMSecsSinceEpoch();
    return milliseconds >= 0 ? std::optional<qint64>(milliseconds) : std::nullopt;
}

std::optional<qint64> offsetFrom(qint64 start, const QString &text)
{
    const std::optional<qint64> offset = millisecondsOf(text);
    qint64 time = 0;
    if (!offset || qAddOverflow(start, *offset, &time))
        return std::nullopt;
    return time;
}

/// The state of one import.
class Run
{
public:
    Run(StationNetwork &network, QDate baseDate, const CsvImport::ProgressCallback &progress)
        : m_network(network)
        , m_plan(network, baseDate)
        , m_progress(progress)
    {
    }

    CsvImport::Result import(const QString &path)
    {
        m_path = QDir::toNativeSeparators(path);
        QFile file(path);
        if (!file.open(QIODevice::ReadOnly)) {
            m_result.error = QStringLiteral("%1: %2").arg(m_path, file.errorString());
            return m_result;
        }
        const QString defect = csvFormatDefect(file.peek(LookedAtFirst));
        if (!defect.isEmpty()) {
            m_result.error = located(1, defect);
            return m_result;
        }
        CsvReader reader(&file);
        if (readHeader(reader) && readRecords(reader, file.size())) {
            if (file.error() != QFileDevice::NoError)
                m_result.error = QStringLiteral("%1: %2").arg(m_path, file.errorString());
        }
        return m_result;
    }

private:
    bool readHeader(CsvReader &reader)
    {
        CsvRecord header;
        QString error;
        if (!reader.next(&header))
            error = QStringLiteral("the file is empty");
        else
            error = header.error.isEmpty() ? m_columns.read(header.fields) : header.error;
        if (!error.isEmpty())
            m_result.error = located(qMax<qint64>(header.line, 1), error);
        return error.isEmpty();
    }

    /// Imports all records. Returns false if the import ends early.
    bool readRecords(CsvReader &reader, qint64 totalBytes)
    {
        CsvRecord record;
        qint64 reportAt = LinesBetweenProgress;
        while (reader.next(&record)) {
            const QString reason =
                record.error.isEmpty() ? importRecord(record.fields) : record.error;
            if (!m_result.error.isEmpty())
                return false;
            if (!reason.isEmpty())
                skip(record.line, reason);
            if (reader.linesRead() >= reportAt) {
                reportAt = reader.linesRead() + LinesBetweenProgress;
                if (!report(reader, totalBytes))
                    return false;
            }
        }
        m_result.recordings = m_recordings.size();
        return flushAll() && report(reader, totalBytes);
    }

    /// Imports a record. Returns the reason why it is not usable, or an empty text.
    QString importRecord(const QStringList &fields)
    {
        if (fields.size() != m_columns.fieldCount())
            return QStringLiteral("the line has %1 fields, the header line has %2")
                .arg(fields.size())
                .arg(m_columns.fieldCount());
        const QString name = m_columns.value(fields, Columns::CameraName).trimmed();
        if (name.isEmpty())
            return QStringLiteral("the camera is missing");
        const QString relayPath = m_columns.value(fields, Columns::RelayPath).trimmed();
        Station *station = relayPath.isEmpty() ? nullptr : m_network.station(relayPath);
        if (!relayPath.isEmpty() && !station)
            return QStringLiteral("unknown station \"%1\"").arg(relayPath.left(80));
        // Check the line before the plan sees it: a bad line must not change later recordings.
        Bookmark bookmark = textsOf(fields);
        bookmark.cameraID = name;
        QString reason = readTimes(fields, 0, &bookmark);
        if (!reason.isEmpty())
            return reason;

        const bool isCamera = m_plan.isCamera(name, station);
        if (!isCamera && (!m_columns.has(Columns::StartOffset) || m_plan.isKey(name)))
            return QStringLiteral("unknown camera \"%1\"").arg(name.left(80));

        const std::optional<PlacedRecording> recording = m_plan.recording(name, station);
        if (!recording)
            return QStringLiteral("there is no camera for this recording");
        bookmark.cameraID = recording->cameraID;
        if (m_columns.has(Columns::StartOffset))
            reason = readTimes(fields, recording->start, &bookmark);
        if (!reason.isEmpty())
            return reason;
        if (!isCamera)
            m_recordings.insert(name);
        m_pending[recording->station].append(bookmark);
        if (m_pending[recording->station].size() >= CsvImport::BatchSize)
            flush(recording->station);
        return QString();
    }

    Bookmark textsOf(const QStringList &fields) const
    {
        Bookmark bookmark;
        bookmark.description = m_columns.value(fields, Columns::Description);
        if (bookmark.description.isEmpty())
            bookmark.description = m_columns.value(fields, Columns::Event);
        bookmark.creator = m_columns.value(fields, Columns::Creator);
        bookmark.group = m_columns.value(fields, Columns::Group);
        return bookmark;
    }

    /// Sets start and end. Returns the reason why times or bookmark are not usable, or an empty
    /// text.
    QString readTimes(const QStringList &fields, qint64 recordingStart, Bookmark *bookmark) const
    {
        const bool areOffsets = m_columns.has(Columns::StartOffset);
        const auto time = [&](Columns::Column column) {
            const QString text = m_columns.value(fields, column).trimmed();
            return areOffsets ? offsetFrom(recordingStart, text) : timeOf(text);
        };
        const auto start = time(areOffsets ? Columns::StartOffset : Columns::Start);
        if (!start)
            return QStringLiteral("the start is not a time");
        const auto end = time(areOffsets ? Columns::EndOffset : Columns::End);
        if (!end)
            return QStringLiteral("the end is not a time");
        bookmark->start = *start;
        bookmark->end = *end;
        return bookmark->defect();
    }

    void skip(qint64 line, const QString &reason)
    {
        ++m_result.skipped;
        if (m_result.messages.size() < CsvImport::MaxMessages)
            m_result.messages.append(located(line, reason));
    }

    QString located(qint64 line, const QString &reason) const
    {
        return QStringLiteral("%1:%2: %3").arg(m_path, QString::number(line), reason);
    }

    bool report(const CsvReader &reader, qint64 totalBytes)
    {
        const CsvImport::Progress progress{reader.linesRead(), reader.bytesRead(), totalBytes};
        if (!m_progress || m_progress(progress))
            return true;
        m_result.cancelled = true;
        return false;
    }

    bool flush(Station *station)
    {
        const QList<Bookmark> bookmarks = m_pending.take(station);
        if (!station->insert(bookmarks)) {
            m_result.error = station->lastError();
            return false;
        }
        m_result.imported += bookmarks.size();
        return true;
    }

    bool flushAll()
    {
        const QList<Station *> stations = m_network.stations();
        return std::all_of(stations.cbegin(), stations.cend(), [this](Station *station) {
            return !m_pending.contains(station) || flush(station);
        });
    }

    StationNetwork &m_network;
    RecordingPlan m_plan;
    const CsvImport::ProgressCallback &m_progress;
    QString m_path;
    Columns m_columns;
    QHash<Station *, QList<Bookmark>> m_pending;
    QSet<QString> m_recordings;
    CsvImport::Result m_result;
};

} // namespace

CsvImport::CsvImport(StationNetwork &network, QDate baseDate)
    : m_network(network)
    , m_baseDate(baseDate)
{
}

CsvImport::Result CsvImport::run(const QString &path) const
{
    return Run(m_network, m_baseDate, m_progress).import(path);
}

} // namespace stations
