#pragma once

#include <QtCore/QRegularExpression>
#include <QtCore/QString>
#include <QtCore/QStringList>

#include <optional>

namespace check {

/// What the command line asks for.
struct Options
{
    QStringList libraries; ///< absolute paths
    bool list = false;
    QRegularExpression include;
    int level = 5; ///< the highest to run
    quint32 seed = 1;
    int timeoutSeconds = 60; ///< for each check
    QString jsonFile;
    QString junitFile;
    bool onlyFailed = false;
    bool inProcess = false;

    // Between the checker and its own child process.
    QString runOne;     ///< the one check to run
    QString resultFile; ///< where its result goes

    /// Reads the command line. Help and version end the process; what can't be understood gives
    /// nothing and @p error.
    static std::optional<Options> parse(const QStringList &arguments, QString &error);
};

} // namespace check
