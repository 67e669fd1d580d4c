#pragma once

#include "Result.h"

#include <QtCore/QList>
#include <QtCore/QString>

namespace check {

/// A result as a line for people, with further findings on lines below.
QString textOf(const Result &result);

/// What all results come to: "31 checks: 30 pass, 1 fail".
QString summaryOf(const QList<Result> &results);

/// 0 when something ran and nothing failed, else 1.
int exitCodeFor(const QList<Result> &results);

// Both return why the file could not be written, or an empty text.
QString writeJson(const QString &file, const QString &library, quint32 seed,
                  const QList<Result> &results);
QString writeJUnit(const QString &file, const QString &library, const QList<Result> &results);

} // namespace check
