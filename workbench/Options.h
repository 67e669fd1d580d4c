#pragma once

#include <QtCore/QString>
#include <QtCore/QStringList>

namespace workbench {

/// What the command line asks for.
struct Options
{
    QString dataFolder; ///< empty: a temporary one
    QString importFile; ///< empty: nothing is imported
    QString pluginPath;
    QString logFile; ///< empty: standard error
    bool verbose = false;
    bool tour = false; ///< the tour instead of the window

    /// Reads the command line. Answers --help and --version itself, and ends the program with
    /// exit code 2 on an unknown option or argument.
    static Options parse(const QStringList &arguments);
};

} // namespace workbench
