#pragma once

#include "Comparison.h"

namespace workbench {

/// Compares two sessions entry by entry and adds differences and counts to @p comparison.
///
/// A difference follows from an earlier one if it belongs to the same call, connection or event, or
/// if it happened inside the same one. docs/recordings.md describes the rule.
void compareEntries(const QList<Recording::Line> &expected, const QList<Recording::Line> &found,
                    Comparison *comparison);

/// Compares two recordings without a plug-in.
Comparison compareRecordings(const Recording &expected, const Recording &found);
/// Compares two files. If one can't be read, the result has the error.
Comparison compareRecordings(const QString &file, const QString &otherFile);

/// Returns a sentence for each difference of the headers: time zone, locale, incomplete recordings.
QStringList notesOn(const Recording::Header &expected, const Recording::Header &found);

} // namespace workbench
