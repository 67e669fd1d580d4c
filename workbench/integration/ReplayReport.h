#pragma once

#include "Replay.h"

#include <QtCore/QByteArray>

namespace workbench::replay {

/// The result as a JSON object: file, error, inputs, outputs, notes, badLines and differences.
QByteArray toJson(const Result &result);

/// The result in the XML that test services read: one test case for each difference and bad line,
/// or one that passed.
QByteArray toJUnit(const Result &result);

/// Writes one or the other, by the ending of the path: ".json" or ".xml".
/// @return what went wrong, or an empty text
QString writeReport(const QString &path, const Result &result);

} // namespace workbench::replay
