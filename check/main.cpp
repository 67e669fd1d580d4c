#include "Checks.h"
#include "LibraryFile.h"
#include "Options.h"
#include "Report.h"
#include "Runner.h"

#include <QtCore/QCoreApplication>

#include <cstdio>

using namespace check;

namespace {

constexpr int WrongUsage = 2;

void print(const QString &line)
{
    std::fprintf(stdout, "%s\n", qUtf8Printable(line));
    std::fflush(stdout);
}

std::vector<Check> chosenChecks(const Options &options)
{
    std::vector<Check> chosen;
    for (const Check &check : allChecks()) {
        if (check.level() <= options.level &&
            options.include.match(QString::fromLatin1(check.name)).hasMatch())
            chosen.push_back(check);
    }
    return chosen;
}

int listChecks(const std::vector<Check> &checks)
{
    for (const Check &check : checks)
        print(QString::fromLatin1(check.name).leftJustified(27) + u' ' +
              QString::fromUtf8(check.statement));
    return 0;
}

int printError(const QString &error)
{
    std::fprintf(stderr, "tessaline-check: %s\n", qPrintable(error));
    return WrongUsage;
}

/// Runs the checks on one library and prints the results.
LibraryReport checkLibrary(const QString &library, const Options &options,
                           const std::vector<Check> &checks)
{
    LibraryReport report{library, {}, 0};
    const QString problem = problemOf(library);
    if (!problem.isEmpty()) {
        report.exitCode = printError(library + QStringLiteral(": ") + problem);
        return report;
    }
    if (options.libraries.size() > 1)
        print(library + u':');
    for (const Check &check : checks) {
        const Result result = options.inProcess ? runInProcess(check, library, options)
                                                : runInChild(check, library, options);
        report.results.append(result);
        if (!options.onlyFailed || isFailure(result.status))
            print(textOf(result));
        if (check.name == loadCheck && isFailure(result.status)) {
            print(QStringLiteral("The library does not load, so no other check was run."));
            break;
        }
    }
    print(summaryOf(report.results));
    report.exitCode = exitCodeFor(report.results);
    return report;
}

int runChecks(const Options &options, const std::vector<Check> &checks)
{
    // A check may leave the process in a state in which other checks fail.
    if (options.inProcess && (checks.size() != 1 || options.libraries.size() != 1))
        return printError(
            QStringLiteral("--in-process runs one check on one library; select it with --include"));
    QList<LibraryReport> reports;
    for (const QString &library : options.libraries)
        reports.append(checkLibrary(library, options, checks));

    int exitCode = exitCodeFor(reports);
    QStringList errors;
    if (!options.jsonFile.isEmpty())
        errors += writeJson(options.jsonFile, options.seed, reports);
    if (!options.junitFile.isEmpty())
        errors += writeJUnit(options.junitFile, reports);
    errors.removeAll(QString());
    for (const QString &error : std::as_const(errors))
        exitCode = printError(error);
    return exitCode;
}

} // namespace

int main(int argc, char *argv[])
{
    const QCoreApplication application(argc, argv);
    QCoreApplication::setApplicationName(QStringLiteral("tessaline-check"));
    QCoreApplication::setApplicationVersion(QStringLiteral(CHECK_VERSION));

    QString error;
    const auto options = Options::parse(QCoreApplication::arguments(), error);
    if (!options)
        return printError(error);
    if (!options->runOne.isEmpty())
        return runAsChild(*options);
    const std::vector<Check> checks = chosenChecks(*options);
    return options->list ? listChecks(checks) : runChecks(*options, checks);
}
