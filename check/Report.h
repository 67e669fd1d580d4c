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
    int exitCode = 0; ///< 2 if the file can't be a library
};

/// A result as a line for people, with further findings on lines below.
QString textOf(const Result &result);

/// What all results come to: "31 checks: 30 pass, 1 fail".
QString summaryOf(const QList<Result> &results);

/// @return 0 when something ran and nothing failed, else 1
int exitCodeFor(const QList<Result> &results);
/// @return the highest exit code of all libraries
int exitCodeFor(const QList<LibraryReport> &reports);

// Both return why the file could not be written, or an empty text.
QString writeJson(const QString &file, quint32 seed, const QList<LibraryReport> &reports);
QString writeJUnit(const QString &file, const QList<LibraryReport> &reports);

} // namespace check
