#include "OpenedRecording.h"

#include <QtCore/QDateTime>
#include <QtCore/QFileInfo>
#include <QtCore/QLocale>

#include <utility>

namespace workbench {

OpenedRecording::OpenedRecording(QObject *parent)
    : TrafficSource(m_model, parent)
{
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
    // That entries are missing matters more than a line that can't be read.
    const Recording::BadLine &worst = m_recording.isCutOff ? bad.last() : bad.first();
    const QString text = tr("Line %1: %2").arg(worst.number).arg(worst.reason);
    return bad.size() == 1 ? text : tr("%1, and %2 more lines").arg(text).arg(bad.size() - 1);
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

void OpenedRecording::show(Recording recording)
{
    m_recording = std::move(recording);
    m_model.load(m_recording);
    Q_EMIT changed();
}

} // namespace workbench
