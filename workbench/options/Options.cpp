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

[[noreturn]] void refuse(const QString &error)
{
    std::exit(complain(error + QStringLiteral("\nTry --help.")));
}

/// A parser whose options are declared and read in one place, the value before its description.
class Parser
{
public:
    Parser()
    {
        m_parser.setApplicationDescription(QStringLiteral(
            "Loads the bookmark plug-in as the client does and drives it against stations that "
            "keep bookmarks in SQLite: in a window, or without a display (or with --tour) in a "
            "tour that is printed to the terminal.\nExit code: 0 when all went well, 1 when a "
            "check of the tour failed, 2 when the program could not begin."));
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
            refuse(m_parser.errorText());
        const QStringList stray = m_parser.positionalArguments();
        if (!stray.isEmpty())
            refuse(QStringLiteral("Unexpected argument: ") + stray.constFirst());
        m_parser.process(arguments);
    }

    /// Options without effect would be mistaken for a result.
    void require(const char *name, const char *other) const
    {
        if (isSet(name) && !isSet(other))
            refuse(
                QStringLiteral("--%1 needs --%2").arg(QLatin1String(name), QLatin1String(other)));
    }

    void exclude(std::initializer_list<const char *> names) const
    {
        const char *found = nullptr;
        for (const char *const name : names) {
            if (isSet(name) && found)
                refuse(QStringLiteral("--%1 and --%2 exclude each other")
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
            refuseValue(name, QStringLiteral("a whole number from %1 to %2").arg(least).arg(most));
        }
        return number;
    }

    /// Empty when the option is not there.
    QString readableFile(const char *name) const
    {
        const QFileInfo file(text(name));
        if (isSet(name) && !(file.isFile() && file.isReadable()))
            refuseValue(name, QStringLiteral("a file that can be read"));
        return text(name);
    }

    /// A path that ends in .json or .xml; empty when the option is not there.
    QString reportFile(const char *name) const
    {
        if (isSet(name) && !text(name).endsWith(QLatin1String(".json")) &&
            !text(name).endsWith(QLatin1String(".xml")))
            refuseValue(name, QStringLiteral("a file name that ends in .json or .xml"));
        return text(name);
    }

private:
    [[noreturn]] void refuseValue(const char *name, const QString &expected) const
    {
        refuse(QStringLiteral("--%1 %2: expected %3")
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
    parser.add("stations", "Have <number> stations in the window, 1 to 100.", "number",
               number(options.stations));
    parser.add("cameras", "Give each station <number> cameras, 1 to 100.", "number",
               number(options.cameras));
    parser.add("bookmarks",
               "Make <number> bookmarks over the last four weeks, 0 to 1000000 on all stations "
               "together, when the data folder is empty.",
               "number", number(options.bookmarks));
    parser.add("seed", "Make other bookmarks with another <number>, 0 to 4294967295.", "number",
               number(options.seed));
    parser.add("data",
               "Keep the stations' databases in <folder>. Without it the window keeps them in the "
               "user's data folder, for each number of stations, cameras and bookmarks and each "
               "seed; the tour's are gone after the run.",
               "folder");
    parser.add("import",
               "Load the bookmarks of a CSV <file> first. docs/workbench.md names the columns.",
               "file");
    parser.add("screenshot",
               "Open the window, write a picture of it (PNG) to <file> when it shows the stations' "
               "bookmarks, and end; needs no display.",
               "file");
    parser.add("tour", "Play the tour in the terminal, without a window.");
    parser.add("frame-times",
               "Open the window, use it as its users do, by key and mouse, and print how soon a "
               "frame shows what was put in and what frames cost. With 100000 bookmarks unless "
               "told otherwise, from stations of its own unless --data names others.");
    parser.add("rounds", "Do everything of --frame-times <number> times, 1 to 100.", "number",
               number(options.rounds));
    parser.add("replay",
               "Play the session recorded in <file> against the plug-in first and report where it "
               "behaves differently. Exits with 0 if the behaviour is identical, and with 1 if it "
               "differs or if nothing was compared.",
               "file");
    parser.add("compare",
               "Compare the recording of --replay with the one in <file>, without a plug-in. Exits "
               "like --replay.",
               "file");
    parser.add("report",
               "Write the outcome of --replay or --compare to <file>, as JSON (.json) or JUnit "
               "(.xml).",
               "file");
    parser.add("headless", "Behave as without a display: open no window.");
    parser.add("qml",
               "Load a QML <file> in place of the client's part of the window, with the plug-in's "
               "object as \"bookmarks\" and the device tree as \"topology\", and again when it is "
               "saved. Exits with the code of Qt.exit(), with 1 instead of 0 if QML reported an "
               "error, and without a display with 2 if the file can't be loaded.",
               "file");
    parser.add("faults",
               "Begin with the faults of a <file>, which the drawer's tab Faults has saved.",
               "file");
    parser.add("until",
               "End the program of --qml with 0 at a signal of the plug-in, and with 3 after that "
               "many seconds; 60 seconds with a signal and without a display.",
               "signal|seconds");
    parser.add(
        "pictures",
        "After the tour, write pictures of the window's main states to <folder>, from "
        "stations of its own; with --frame-times, write its figures there as frame-times.json.",
        "folder");
    // Not "plugin", which Qt takes for itself.
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
