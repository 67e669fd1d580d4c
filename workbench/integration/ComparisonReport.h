#pragma once

#include "Comparison.h"

#include <QtCore/QByteArray>

namespace workbench {

/// The comparison as a JSON object; docs/recordings.md describes it.
QByteArray toJson(const Comparison &comparison);
/// The reverse.
Comparison comparisonFromJson(const QByteArray &text);

/// The comparison in the XML that test services read: one test case for each bad line and each
/// difference that does not follow from another one, or one that passed.
QByteArray toJUnit(const Comparison &comparison);

/// Writes one or the other, by the ending of the path: ".json" or ".xml".
/// @return what went wrong, or an empty text
QString writeReport(const QString &path, const Comparison &comparison);

} // namespace workbench
