#pragma once

#include "Comparison.h"

#include <QtCore/QByteArray>

namespace workbench {

/// Returns a comparison as a JSON object; docs/recordings.md describes it.
QByteArray toJson(const Comparison &comparison);
/// Returns the comparison in a JSON object of toJson().
Comparison comparisonFromJson(const QByteArray &text);

/// Returns a comparison as JUnit XML: a failed test case for each bad line and each difference
/// without a cause, or one passed test case.
QByteArray toJUnit(const Comparison &comparison);

/// Writes JSON to a path that ends in ".json", JUnit XML to one that ends in ".xml".
/// @return an error message with the file, or an empty text
QString writeReport(const QString &path, const Comparison &comparison);

} // namespace workbench
