#pragma once

#include <QtCore/QRegularExpression>
#include <QtCore/QString>
#include <QtCore/QStringList>

#include <optional>

namespace check {

/// The parsed command line.
struct Options
{
    QStringList libraries; ///< absolute paths
    bool list = false;
    QRegularExpression include;
    int level = 6; ///< the highest level to run
    quint32 seed = 1;
    int timeoutSeconds = 60; ///< processor time for each check
    QString jsonFile;
    QString junitFile;
    bool onlyFailed = false;
    bool inProcess = false;

    // Hidden options that the checker passes to its child process.
    QString runOne;     ///< name of the check to run
    QString resultFile; ///< file for its result

    /// Parses the command line. --help, --version and unknown options end the process.
    /// @param error set if a value is invalid
    /// @return nullopt on an error
    static std::optional<Options> parse(const QStringList &arguments, QString &error);
};

} // namespace check
