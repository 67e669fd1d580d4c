#include "ReplayProcess.h"

#include "ComparisonReport.h"

#include <QtCore/QFile>

namespace workbench {

ReplayProcess::~ReplayProcess()
{
    stop();
}

void ReplayProcess::start(const QString &program, const QString &library, const QString &file)
{
    stop();
    m_file = file;
    m_folder.emplace();
    m_process.emplace();
    // Queued, because finish() destroys the process that emits the signal.
    connect(&*m_process, &QProcess::finished, this, &ReplayProcess::finish, Qt::QueuedConnection);
    connect(
        &*m_process, &QProcess::errorOccurred, this,
        [this](QProcess::ProcessError error) {
            if (error == QProcess::FailedToStart)
                finish();
        },
        Qt::QueuedConnection);
    m_process->start(program, {QStringLiteral("--headless"), QStringLiteral("--replay"), file,
                               QStringLiteral("--library"), library, QStringLiteral("--report"),
                               m_folder->filePath(QStringLiteral("report.json"))});
}

void ReplayProcess::stop()
{
    if (!m_process)
        return;
    m_process->disconnect(this);
    m_process->kill();
    m_process->waitForFinished();
    m_process.reset();
}

void ReplayProcess::finish()
{
    if (!m_process || m_process->state() != QProcess::NotRunning)
        return; // the signal is from a stopped process
    Comparison comparison;
    QFile report(m_folder->filePath(QStringLiteral("report.json")));
    if (report.open(QIODevice::ReadOnly))
        comparison = comparisonFromJson(report.readAll());
    else if (m_process->exitStatus() == QProcess::CrashExit &&
             m_process->error() == QProcess::Crashed)
        comparison.error = tr("%1: the replay crashed").arg(m_file);
    else
        comparison.error =
            tr("%1: the replay failed: %2")
                .arg(m_file,
                     m_process->error() == QProcess::UnknownError
                         ? QString::fromLocal8Bit(m_process->readAllStandardError()).trimmed()
                         : m_process->errorString());
    comparison.file = m_file;
    m_process.reset();
    Q_EMIT finished(comparison);
}

} // namespace workbench
