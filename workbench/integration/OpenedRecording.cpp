#include "OpenedRecording.h"

#include "Comparer.h"

#include <QtCore/QDateTime>
#include <QtCore/QFileInfo>
#include <QtCore/QLocale>

#include <algorithm>
#include <utility>

namespace workbench {

OpenedRecording::OpenedRecording(QObject *parent)
    : TrafficSource(m_model, parent)
{
    connect(&m_replay, &ReplayProcess::finished, this, [this](const Comparison &comparison) {
        // Read the file again, because it may have changed since it was opened.
        if (comparison.error.isEmpty())
            open(comparison);
        else
            setComparison(comparison);
        Q_EMIT replayingChanged();
    });
}

QString OpenedRecording::title() const
{
    const QDateTime start = QDateTime::fromMSecsSinceEpoch(m_recording.header.start);
    return tr("%1: %2, recorded %3")
        .arg(QFileInfo(m_recording.file).fileName(), m_recording.header.pluginName,
             QLocale().toString(start, QLocale::ShortFormat));
}

QString OpenedRecording::problem() const
{
    const QList<Recording::BadLine> &bad = m_recording.badLines;
    if (bad.isEmpty())
        return {};
    // Missing entries are more important than an unusable line.
    const Recording::BadLine &worst = m_recording.isCutOff ? bad.last() : bad.first();
    const QString text = tr("Line %1: %2").arg(worst.number).arg(worst.reason);
    return bad.size() == 1 ? text : tr("%1, and %2 more lines").arg(text).arg(bad.size() - 1);
}

QString OpenedRecording::result() const
{
    if (!m_comparison)
        return {};
    if (!m_comparison->error.isEmpty())
        return m_comparison->error;
    const QString other = QFileInfo(m_comparison->otherFile).fileName();
    return tr("%1: %2").arg(other.isEmpty() ? tr("Replay") : other, m_comparison->result());
}

QString OpenedRecording::summary() const
{
    return m_comparison && m_comparison->error.isEmpty() ? m_comparison->summary() : result();
}

int OpenedRecording::firstLine() const
{
    return m_comparison && !m_comparison->differences.isEmpty()
               ? m_comparison->differences.constFirst().line
               : 0;
}

QStringList OpenedRecording::remarks() const
{
    return m_comparison ? m_comparison->remarks() : QStringList();
}

QString OpenedRecording::open(const QString &path)
{
    QString error;
    std::optional<Recording> recording = Recording::read(path, &error);
    if (recording)
        show(std::move(*recording));
    return error;
}

void OpenedRecording::close()
{
    show({});
}

QString OpenedRecording::compareWith(const QString &path)
{
    QString error;
    if (const auto other = Recording::read(path, &error))
        setComparison(compareRecordings(m_recording, *other));
    return error;
}

void OpenedRecording::open(const Comparison &comparison)
{
    if (open(comparison.file).isEmpty())
        setComparison(comparison);
}

void OpenedRecording::setReplayProgram(const QString &program, const QString &library)
{
    m_replayProgram = program;
    m_replayLibrary = library;
}

void OpenedRecording::replay()
{
    setComparison(std::nullopt);
    m_replay.start(m_replayProgram, m_replayLibrary, m_recording.file);
    Q_EMIT replayingChanged();
}

void OpenedRecording::stopReplay()
{
    m_replay.stop();
    Q_EMIT replayingChanged();
}

int OpenedRecording::rowOf(int line) const
{
    const auto after = std::upper_bound(
        m_recording.lines.cbegin(), m_recording.lines.cend(), line,
        [](int number, const Recording::Line &one) { return number < one.number; });
    return std::max(0, static_cast<int>(after - m_recording.lines.cbegin()) - 1);
}

Recording::Header OpenedRecording::header() const
{
    Recording::Header header = m_recording.header;
    header.complete = header.complete && m_recording.badLines.isEmpty();
    return header;
}

void OpenedRecording::show(Recording recording)
{
    stopReplay();
    setComparison(std::nullopt);
    m_recording = std::move(recording);
    m_model.load(m_recording);
    Q_EMIT changed();
}

void OpenedRecording::setComparison(const std::optional<Comparison> &comparison)
{
    m_comparison = comparison;
    const QList<Difference> differences =
        comparison ? comparison->differences : QList<Difference>();
    m_differences.show(differences);
    QMap<int, TrafficModel::Mark> marks;
    for (const Difference &difference : differences) {
        TrafficModel::Mark &mark = marks[rowOf(difference.line)];
        mark.texts.append(difference.text());
        mark.follows = mark.follows && difference.cause >= 0;
    }
    m_model.setMarks(marks);
    Q_EMIT compared();
}

} // namespace workbench
