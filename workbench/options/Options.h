#pragma once

#include <QtCore/QString>
#include <QtCore/QStringList>

namespace workbench {

/// What the command line asks for.
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
    QString faultsFile;     ///< faults of the stations from the start; empty: none
    QString until;          ///< a signal or seconds that end it; empty: neither
    QString picturesFolder; ///< of the tour; empty: no pictures are taken
    QString pluginPath;
    QString logFile; ///< empty: standard error
    bool verbose = false;
    bool tour = false;       ///< the tour instead of the window
    bool frameTimes = false; ///< measure the window
    int rounds = 5;          ///< of that

    /// Reads the command line. Answers --help and --version itself, and ends the program with
    /// exit code 2 on an unknown option or argument and on a value that can't be used.
    static Options parse(const QStringList &arguments);

    /// The user's folder for this set of stations, cameras and bookmarks: another set asked for is
    /// another folder, as only an empty one is filled.
    QString ownDataFolder() const;
};

} // namespace workbench
