#pragma once

#include <QtCore/QString>
#include <QtCore/QStringList>

namespace workbench {

/// The options of the command line.
struct Options
{
    int stations = 3;
    int cameras = 4; ///< of each station
    int bookmarks = 5'000;
    quint32 seed = 1;
    QString dataFolder;     ///< empty: ownDataFolder() for the window, a temporary one for the tour
    QString importFile;     ///< empty: nothing is imported
    QString screenshotFile; ///< empty: the window stays open
    QString replayFile;     ///< empty: nothing is replayed
    QString compareFile;    ///< compared with the file to replay; empty: a plug-in is
    QString reportFile;     ///< of the replay or comparison; empty: none
    QString qmlFile;        ///< in place of the client's part of the window; empty: none
    QString faultsFile;     ///< initial faults of the stations; empty: none
    QString until;          ///< signal or seconds that end the QML file; empty: neither
    QString picturesFolder; ///< empty: no pictures are written
    QString pluginPath;
    QString logFile; ///< empty: standard error
    bool verbose = false;
    bool tour = false;       ///< the tour instead of the window
    bool frameTimes = false; ///< measure frame times instead
    int rounds = 5;          ///< of the measurement

    /// Parses the command line. Prints --help and --version. Ends the program with exit code 2 for
    /// an unknown option, an unexpected argument or an unusable value.
    static Options parse(const QStringList &arguments);

    /// Returns the folder in the user's data folder for this number of stations, cameras and
    /// bookmarks and this seed. Each combination has its folder, because only an empty one is
    /// filled.
    QString ownDataFolder() const;
};

} // namespace workbench
