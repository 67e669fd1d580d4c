#include "Options.h"

#include "PluginHost.h"

#include <QtCore/QCommandLineParser>

#include <cstdio>
#include <cstdlib>

namespace workbench {

Options Options::parse(const QStringList &arguments)
{
    QCommandLineParser parser;
    parser.setApplicationDescription(QStringLiteral(
        "Loads the bookmark plug-in as the client does and plays a tour of its interface against "
        "stations that keep bookmarks in SQLite.\nExit code: 0 when every check of the tour held, "
        "1 when one failed, 2 when the tour could not begin."));
    parser.addHelpOption();
    parser.addVersionOption();

    const QCommandLineOption data(QStringLiteral("data"),
                                  QStringLiteral("Keep the stations' databases in <folder>; "
                                                 "without it they are gone after the run."),
                                  QStringLiteral("folder"));
    const QCommandLineOption import(QStringLiteral("import"),
                                    QStringLiteral("Load the bookmarks of a CSV <file> first. The "
                                                   "README names the columns."),
                                    QStringLiteral("file"));
    // Not "plugin", which Qt takes for itself.
    const QCommandLineOption plugin(QStringLiteral("library"),
                                    QStringLiteral("Load this build of the plug-in."),
                                    QStringLiteral("file"), PluginHost::defaultPath());
    const QCommandLineOption log(QStringLiteral("log"),
                                 QStringLiteral("Append the lines of the host's logging library "
                                                "to <file> instead of standard error."),
                                 QStringLiteral("file"));
    const QCommandLineOption verbose(QStringLiteral("verbose"),
                                     QStringLiteral("Show payloads and results."));
    const QCommandLineOption tour(
        QStringLiteral("tour"), QStringLiteral("Play the tour in the terminal, without a window."));
    parser.addOptions({data, import, plugin, log, verbose, tour});

    if (!parser.parse(arguments) || !parser.positionalArguments().isEmpty()) {
        const QString error = parser.positionalArguments().isEmpty()
                                  ? parser.errorText()
                                  : QStringLiteral("Unexpected argument: ") +
                                        parser.positionalArguments().constFirst();
        std::fprintf(stderr, "%s\nTry --help.\n", qPrintable(error));
        std::exit(2);
    }
    parser.process(arguments);

    Options options;
    options.dataFolder = parser.value(data);
    options.importFile = parser.value(import);
    options.pluginPath = parser.value(plugin);
    options.logFile = parser.value(log);
    options.verbose = parser.isSet(verbose);
    options.tour = parser.isSet(tour);
    return options;
}

} // namespace workbench
