#include "Options.h"

#include "ExitCode.h"
#include "PluginHost.h"

#include <QtCore/QCommandLineParser>
#include <QtCore/QFileInfo>
#include <QtCore/QStandardPaths>

#include <cstdlib>
#include <initializer_list>
#include <limits>

namespace workbench {

namespace {

[[noreturn]] void exitWithError(const QString &error)
{
    std::exit(reportError(error + QStringLiteral("\nTry --help.")));
}

/// Parses the command line; ends the program with an error message for a wrong value.
class Parser
{
public:
    Parser()
    {
        m_parser.setApplicationDescription(QStringLiteral(
            "Loads the bookmark plug-in as the client does and connects it to stations that store "
            "bookmarks in SQLite. Opens a window; without a display, or with --tour, plays a tour "
            "in the terminal.\nExits with 0 on success, with 1 if a check failed, and with 2 if "
            "the program can't start."));
        m_parser.addHelpOption();
        m_parser.addVersionOption();
    }

    void add(const char *name, const char *description, const char *value = nullptr,
             const QString &byDefault = QString())
    {
        const QString unit = QString::fromLatin1(value);
        m_parser.addOption(
            {QString::fromLatin1(name), QString::fromLatin1(description), unit, byDefault});
    }

    void process(const QStringList &arguments)
    {
        if (!m_parser.parse(arguments))
            exitWithError(m_parser.errorText());
        const QStringList stray = m_parser.positionalArguments();
        if (!stray.isEmpty())
            exitWithError(QStringLiteral("Unexpected argument: ") + stray.constFirst());
        m_parser.process(arguments);
    }

    /// Options without effect would be mistaken for a result.
    void require(const char *name, const char *other) const
    {
        if (isSet(name) && !isSet(other))
            exitWithError(
                QStringLiteral("--%1 needs --%2").arg(QLatin1String(name), QLatin1String(other)));
    }

    void exclude(std::initializer_list<const char *> names) const
    {
        const char *found = nullptr;
        for (const char *const name : names) {
            if (isSet(name) && found)
                exitWithError(QStringLiteral("--%1 and --%2 exclude each other")
                                  .arg(QLatin1String(found), QLatin1String(name)));
            found = isSet(name) ? name : found;
        }
    }

    bool isSet(const char *name) const { return m_parser.isSet(QString::fromLatin1(name)); }
    QString text(const char *name) const { return m_parser.value(QString::fromLatin1(name)); }

    qint64 number(const char *name, qint64 least, qint64 most) const
    {
        bool ok = false;
        const qint64 number = text(name).toLongLong(&ok);
        if (!ok || number < least || number > most) {
            exitForValue(name, QStringLiteral("a whole number from %1 to %2").arg(least).arg(most));
        }
        return number;
    }

    /// Returns the value of an option, or an empty text if it is not set.
    QString readableFile(const char *name) const
    {
        const QFileInfo file(text(name));
        if (isSet(name) && !(file.isFile() && file.isReadable()))
            exitForValue(name, QStringLiteral("a file that can be read"));
        return text(name);
    }

    /// Returns a path that ends in .json or .xml, or an empty text if the option is not set.
    QString reportFile(const char *name) const
    {
        if (isSet(name) && !text(name).endsWith(QLatin1String(".json")) &&
            !text(name).endsWith(QLatin1String(".xml")))
            exitForValue(name, QStringLiteral("a file name that ends in .json or .xml"));
        return text(name);
    }

private:
    [[noreturn]] void exitForValue(const char *name, const QString &expected) const
    {
        exitWithError(QStringLiteral("--%1 %2: expected %3")
                          .arg(QString::fromLatin1(name), text(name), expected));
    }

    QCommandLineParser m_parser;
};

} // namespace

Options Options::parse(const QStringList &arguments)
{
    Options options;
    const auto number = [](qint64 value) { return QString::number(value); };
    Parser parser;
    parser.add("stations", "Use <number> stations, 1 to 100.", "number", number(options.stations));
    parser.add("cameras", "Give each station <number> cameras, 1 to 100.", "number",
               number(options.cameras));
    parser.add("bookmarks",
               "Create <number> bookmarks of the last four weeks, 0 to 1000000 in all, if the data "
               "folder is empty.",
               "number", number(options.bookmarks));
    parser.add("seed", "Create other bookmarks for another <number>, 0 to 4294967295.", "number",
               number(options.seed));
    parser.add(
        "data",
        "Store the stations' databases in <folder>. By default the window uses one folder in "
        "the user's data folder for each combination of --stations, --cameras, --bookmarks "
        "and --seed, and the tour deletes its databases at the end.",
        "folder");
    parser.add("import",
               "Import the bookmarks of a CSV <file> first. docs/workbench.md lists the columns.",
               "file");
    parser.add("screenshot",
               "Open the window, write a picture of it (PNG) to <file> once it shows the stations' "
               "bookmarks, and exit. Works without a display.",
               "file");
    parser.add("tour", "Play the tour in the terminal, without a window.");
    parser.add("frame-times",
               "Open the window, operate it by simulated keys and mouse, and print the time from "
               "each input to the frame that shows it, and the times of frames. Uses 100000 "
               "bookmarks and temporary databases, unless --bookmarks or --data is set.");
    parser.add("rounds", "Repeat the actions of --frame-times <number> times, 1 to 100.", "number",
               number(options.rounds));
    parser.add("replay",
               "Play the session recorded in <file> against the plug-in first and report the "
               "differences. Exits with 0 if the behaviour is identical, and with 1 if it differs "
               "or if nothing was compared.",
               "file");
    parser.add("compare",
               "Compare the recording of --replay with the one in <file>, without a plug-in. Exits "
               "like --replay.",
               "file");
    parser.add("report",
               "Write the result of --replay or --compare to <file>, as JSON (.json) or JUnit "
               "(.xml).",
               "file");
    parser.add("headless", "Open no window, as without a display.");
    parser.add("qml",
               "Load a QML <file> in place of the client's part of the window, with the plug-in's "
               "object as \"bookmarks\" and the stations as \"topology\". Load it again when it is "
               "saved. Exits with the code of Qt.exit(), with 1 instead of 0 if QML reported an "
               "error, and without a display with 2 if the file can't be loaded.",
               "file");
    parser.add("faults", "Start with the faults of a <file> saved in the drawer's tab Faults.",
               "file");
    parser.add("until",
               "With --qml: exit with 0 at this signal of the plug-in, or with 3 after this many "
               "seconds. The limit is 60 seconds with a signal or without a display.",
               "signal|seconds");
    parser.add(
        "pictures",
        "After the tour, write pictures of the window's main states to <folder>, with temporary "
        "stations. With --frame-times, write the times there as frame-times.json.",
        "folder");
    // Not "plugin", which Qt reads itself.
    parser.add("library", "Load this build of the plug-in.", "file", PluginHost::defaultPath());
    parser.add("log",
               "Append the lines of the host's logging library to <file> instead of standard "
               "error.",
               "file");
    parser.add("verbose", "Show payloads and results in the tour.");
    parser.process(arguments);
    parser.require("until", "qml");
    parser.require("report", "replay");
    parser.require("compare", "replay");
    parser.require("rounds", "frame-times");
    parser.exclude({"qml", "frame-times", "tour", "screenshot"});
    parser.exclude({"qml", "frame-times", "replay"});
    parser.exclude({"tour", "faults"});
    parser.exclude({"frame-times", "faults"});

    options.stations = int(parser.number("stations", 1, 100));
    options.cameras = int(parser.number("cameras", 1, 100));
    options.frameTimes = parser.isSet("frame-times");
    options.rounds = int(parser.number("rounds", 1, 100));
    options.bookmarks = options.frameTimes && !parser.isSet("bookmarks")
                            ? 100'000
                            : int(parser.number("bookmarks", 0, 1'000'000));
    options.seed = quint32(parser.number("seed", 0, std::numeric_limits<quint32>::max()));
    options.dataFolder = parser.text("data");
    options.importFile = parser.readableFile("import");
    options.screenshotFile = parser.text("screenshot");
    options.replayFile = parser.readableFile("replay");
    options.compareFile = parser.readableFile("compare");
    options.reportFile = parser.reportFile("report");
    options.qmlFile = parser.readableFile("qml");
    options.faultsFile = parser.readableFile("faults");
    options.until = parser.text("until");
    options.picturesFolder = parser.text("pictures");
    options.pluginPath = parser.text("library");
    options.logFile = parser.text("log");
    options.verbose = parser.isSet("verbose");
    options.tour = parser.isSet("tour");
    return options;
}

QString Options::ownDataFolder() const
{
    return QStringLiteral("%1/%2-stations-%3-cameras-%4-bookmarks-seed-%5")
        .arg(QStandardPaths::writableLocation(QStandardPaths::AppDataLocation))
        .arg(stations)
        .arg(cameras)
        .arg(bookmarks)
        .arg(seed);
}

} // namespace workbench
