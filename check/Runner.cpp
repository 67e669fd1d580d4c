#include "Runner.h"

#include "Breadcrumbs.h"
#include "CheckContext.h"
#include "Checks.h"
#include "ProcessProbe.h"
#include "QtMessages.h"

#include <QtCore/QCoreApplication>
#include <QtCore/QElapsedTimer>
#include <QtCore/QFile>
#include <QtCore/QJsonDocument>
#include <QtCore/QProcess>
#include <QtCore/QTemporaryDir>

#include <algorithm>

namespace check {

using namespace driver;

namespace {

Result makeResult(Status status, const QString &line)
{
    Result result;
    result.status = status;
    result.line = line;
    return result;
}

QStringList lastLines(const QByteArray &output)
{
    const QStringList lines = QString::fromLocal8Bit(output).split(u'\n', Qt::SkipEmptyParts);
    return lines.mid(std::max<qsizetype>(0, lines.size() - 5));
}

QString breadcrumbFile(const QString &resultFile)
{
    return resultFile + QStringLiteral(".steps");
}

Result readResult(const QString &fileName)
{
    QFile file(fileName);
    if (!file.open(QIODevice::ReadOnly))
        return makeResult(Status::Crash,
                          QStringLiteral("the process ended before the check was complete"));
    return Result::fromJson(QJsonDocument::fromJson(file.readAll()).object());
}

/// Makes a result fail if the child wrote any output: standard output and error belong to the host.
void failOnOutput(Result &result, QProcess &child)
{
    const QByteArray output = child.readAllStandardOutput() + child.readAllStandardError();
    if (output.isEmpty())
        return;
    result.more += lastLines(output);
    if (isFailure(result.status))
        return;
    result.status = Status::Fail;
    result.line = QStringLiteral("expected no output, found %1 bytes on standard output or error")
                      .arg(output.size());
}

/// Waits until a process ends. The limit counts processor time, so that a busy machine causes no
/// timeout. A process that only waits ends after ten times the limit.
bool endsWithin(int seconds, QProcess &child)
{
    constexpr int interval = 100;
    QElapsedTimer clock;
    clock.start();
    while (!child.waitForFinished(interval) && child.state() != QProcess::NotRunning) {
        const qint64 used = processorTime(child.processId()).value_or(clock.elapsed());
        if (used > seconds * qint64(1000) || clock.elapsed() > seconds * qint64(10'000))
            return false;
    }
    return true;
}

Result resultOf(QProcess &child, const QString &resultFile, int timeoutSeconds)
{
    if (!child.waitForStarted())
        return makeResult(Status::Fail, child.errorString());
    if (!endsWithin(timeoutSeconds, child)) {
        child.kill();
        child.waitForFinished();
        return makeResult(
            Status::Timeout,
            QStringLiteral("expected the check to end within %1 s of processor time, found it "
                           "still running")
                .arg(timeoutSeconds));
    }
    Result result = readResult(resultFile);
    if (child.exitStatus() == QProcess::CrashExit) {
        const bool reported = QFile::exists(resultFile);
        const QStringList found = reported ? QStringList(result.line) + result.more : QStringList();
        result = makeResult(Status::Crash,
                            QStringLiteral("expected a normal exit, found %1 %2")
                                .arg(describeCrash(child.exitCode()),
                                     reported ? QStringLiteral("at the end of the process")
                                              : QStringLiteral("during the check")));
        result.more = found;
    }
    failOnOutput(result, child);
    return result;
}

} // namespace

Result runInProcess(const Check &check, const QString &library, const Options &options)
{
    QElapsedTimer timer;
    timer.start();
    CheckContext context(library, options.seed);
    {
        const QtMessages messages;
        check.run(context);
        for (const QString &message : messages.warnings())
            context.warn(QStringLiteral("Qt warned: ") + message);
    }
    Result result = context.result();
    result.name = QString::fromLatin1(check.name);
    result.level = check.level();
    result.milliseconds = timer.elapsed();
    return result;
}

Result runInChild(const Check &check, const QString &library, const Options &options)
{
    QElapsedTimer timer;
    timer.start();
    const QTemporaryDir folder;
    const QTemporaryDir resultFolder;
    const QString resultFile = resultFolder.filePath(QStringLiteral("result.json"));
    QProcess child;
    child.setWorkingDirectory(folder.path());
    child.setProcessEnvironment(childEnvironment(folder.path()));
    child.start(QCoreApplication::applicationFilePath(),
                {library, QStringLiteral("--run-one"), QString::fromLatin1(check.name),
                 QStringLiteral("--result"), resultFile, QStringLiteral("--seed"),
                 QString::number(options.seed)});
    Result result = resultOf(child, resultFile, options.timeoutSeconds);
    if (result.status == Status::Crash || result.status == Status::Timeout) {
        const QStringList steps = readBreadcrumbs(breadcrumbFile(resultFile));
        for (const QString &step : steps)
            result.more.append(QStringLiteral("step before: ") + step);
    }
    result.name = QString::fromLatin1(check.name);
    result.level = check.level();
    result.milliseconds = timer.elapsed();
    return result;
}

int runAsChild(const Options &options)
{
    const Check *const check = findCheck(options.runOne.toLatin1());
    QFile file(options.resultFile);
    if (!check || options.resultFile.isEmpty() || options.libraries.size() != 1)
        return 2;
    openBreadcrumbFile(breadcrumbFile(options.resultFile));
    const QByteArray json =
        QJsonDocument(runInProcess(*check, options.libraries.constFirst(), options).toJson())
            .toJson();
    return file.open(QIODevice::WriteOnly) && file.write(json) == json.size() ? 0 : 2;
}

} // namespace check
