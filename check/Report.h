#pragma once

#include "Result.h"

#include <QtCore/QList>
#include <QtCore/QString>

namespace check {

/// The results of the checks on one library.
struct LibraryReport
{
    QString library;
    QList<Result> results;
    int exitCode = 0; ///< 2 if the file is not a library for this machine
};

/// @return a result as text: one line, and an indented line for each further finding
QString textOf(const Result &result);

/// @return the number of results of each status, "31 checks: 30 pass, 1 fail"
QString summaryOf(const QList<Result> &results);

/// @return 0 if at least one check ran and none failed, else 1
int exitCodeFor(const QList<Result> &results);
/// @return the highest exit code of all libraries
int exitCodeFor(const QList<LibraryReport> &reports);

/// Writes all results to a JSON file.
/// @return the error if the file can't be written; empty on success
QString writeJson(const QString &file, quint32 seed, const QList<LibraryReport> &reports);
/// Writes all results to a JUnit XML file.
/// @return the error if the file can't be written; empty on success
QString writeJUnit(const QString &file, const QList<LibraryReport> &reports);

} // namespace check
