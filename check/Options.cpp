#include "Options.h"

#include <QtCore/QCommandLineParser>
#include <QtCore/QFileInfo>

namespace check {

namespace {

/// Returns the number in an option, or nullopt and an @p error if it is not from @p least to
/// @p greatest.
std::optional<uint> numberOf(const QCommandLineParser &parser, const QString &option, uint least,
                             uint greatest, QString &error)
{
    bool isNumber = false;
    const uint number = parser.value(option).toUInt(&isNumber);
    if (isNumber && number >= least && number <= greatest)
        return number;
    error = QStringLiteral("--%1: expected a number from %2 to %3")
                .arg(option)
                .arg(least)
                .arg(greatest);
    return std::nullopt;
}

void describe(QCommandLineParser &parser)
{
    parser.setApplicationDescription(QStringLiteral(
        "Checks builds of the Tessaline plug-in against the contract with host and QML.\n"
        "Exit code: 0 if all checks passed; 1 if a check failed or no check ran; 2 if the\n"
        "command line is wrong, a report can't be written, or a LIBRARY is not a library for\n"
        "this machine. With several libraries, the highest code of all."));
    parser.addHelpOption();
    parser.addVersionOption();
    parser.addPositionalArgument(QStringLiteral("LIBRARY"),
                                 QStringLiteral("The libraries to check."),
                                 QStringLiteral("LIBRARY..."));

    QCommandLineOption runOne(QStringLiteral("run-one"), QString(), QStringLiteral("check"));
    QCommandLineOption resultFile(QStringLiteral("result"), QString(), QStringLiteral("file"));
    runOne.setFlags(QCommandLineOption::HiddenFromHelp);
    resultFile.setFlags(QCommandLineOption::HiddenFromHelp);
    parser.addOptions(
        {{QStringLiteral("list"), QStringLiteral("Lists the checks and what each one checks.")},
         {QStringLiteral("include"), QStringLiteral("Runs only checks whose name matches."),
          QStringLiteral("regex")},
         {QStringLiteral("level"),
          QStringLiteral("Runs only levels from 1 to this one; 6 by default."),
          QStringLiteral("1..6"), QStringLiteral("6")},
         {QStringLiteral("seed"), QStringLiteral("Seed of random choices; 1 by default."),
          QStringLiteral("number"), QStringLiteral("1")},
         {QStringLiteral("timeout"),
          QStringLiteral("Limits the processor time of each check; 60 by default."),
          QStringLiteral("seconds"), QStringLiteral("60")},
         {QStringLiteral("only-failed"),
          QStringLiteral("Prints only failed checks and the summary.")},
         {QStringLiteral("json"), QStringLiteral("Writes the results to a file as JSON."),
          QStringLiteral("file")},
         {QStringLiteral("junit"), QStringLiteral("Writes the results to a file as JUnit XML."),
          QStringLiteral("file")},
         {QStringLiteral("in-process"),
          QStringLiteral("Runs one check in this process, for a debugger.")},
         runOne,
         resultFile});
}

} // namespace

std::optional<Options> Options::parse(const QStringList &arguments, QString &error)
{
    QCommandLineParser parser;
    describe(parser);
    parser.process(arguments);

    Options options;
    options.list = parser.isSet(QStringLiteral("list"));
    options.include.setPattern(parser.value(QStringLiteral("include")));
    options.jsonFile = parser.value(QStringLiteral("json"));
    options.junitFile = parser.value(QStringLiteral("junit"));
    options.onlyFailed = parser.isSet(QStringLiteral("only-failed"));
    options.inProcess = parser.isSet(QStringLiteral("in-process"));
    options.runOne = parser.value(QStringLiteral("run-one"));
    options.resultFile = parser.value(QStringLiteral("result"));
    if (!options.include.isValid())
        error = QStringLiteral("--include: ") + options.include.errorString();

    const auto level = numberOf(parser, QStringLiteral("level"), 1, 6, error);
    const auto seed = numberOf(parser, QStringLiteral("seed"), 0, 0xffffffffU, error);
    const auto timeout = numberOf(parser, QStringLiteral("timeout"), 1, 86400, error);
    options.level = int(level.value_or(0));
    options.seed = seed.value_or(0);
    options.timeoutSeconds = int(timeout.value_or(0));

    const QStringList libraries = parser.positionalArguments();
    for (const QString &library : libraries)
        options.libraries.append(QFileInfo(library).absoluteFilePath());
    if (libraries.isEmpty() && !options.list)
        error = QStringLiteral("no LIBRARY is named; see --help");
    if (!error.isEmpty())
        return std::nullopt;
    return options;
}

} // namespace check
