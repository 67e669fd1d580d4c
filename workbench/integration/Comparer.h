#pragma once

#include "Comparison.h"

namespace workbench {

/// Compares entry by entry and adds the differences and numbers to @p comparison.
///
/// A difference follows from an earlier one if it belongs to the same call, connection or event, or
/// if it happened inside the same one. docs/recordings.md describes the rule.
void compareEntries(const QList<Recording::Line> &expected, const QList<Recording::Line> &found,
                    Comparison *comparison);

/// Compares two recordings without a plug-in.
Comparison compareRecordings(const Recording &expected, const Recording &found);
/// As above; a file that can't be read is the comparison's error.
Comparison compareRecordings(const QString &file, const QString &otherFile);

/// Time zone and locale that differ and missing beginnings, a sentence each.
QStringList notesOn(const Recording::Header &expected, const Recording::Header &found);

} // namespace workbench
