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
              QString::fromUtf8(check.proves));
    return 0;
}

int complain(const QString &error)
{
    std::fprintf(stderr, "tessaline-check: %s\n", qPrintable(error));
    return WrongUsage;
}

int runChecks(const Options &options, const std::vector<Check> &checks)
{
    // Each leaves the process as a host would not like to find it.
    if (options.inProcess && checks.size() != 1)
        return complain(QStringLiteral("--in-process runs one check; choose it by --include"));
    const QString problem = problemOf(options.library);
    if (!problem.isEmpty())
        return complain(options.library + QStringLiteral(": ") + problem);
    QList<Result> results;
    for (const Check &check : checks) {
        results.append(options.inProcess ? runHere(check, options) : runInChild(check, options));
        print(textOf(results.constLast()));
        if (results.constLast().name == QLatin1String(loadCheck) &&
            isFailure(results.constLast().status)) {
            print(QStringLiteral("The other checks need a library that loads; none was run."));
            break;
        }
    }
    print(summaryOf(results));

    int exitCode = exitCodeFor(results);
    QStringList errors;
    if (!options.jsonFile.isEmpty())
        errors += writeJson(options.jsonFile, options.library, options.seed, results);
    if (!options.junitFile.isEmpty())
        errors += writeJUnit(options.junitFile, options.library, results);
    errors.removeAll(QString());
    for (const QString &error : std::as_const(errors))
        exitCode = complain(error);
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
        return complain(error);
    if (!options->runOne.isEmpty())
        return runAsChild(*options);
    const std::vector<Check> checks = chosenChecks(*options);
    return options->list ? listChecks(checks) : runChecks(*options, checks);
}
