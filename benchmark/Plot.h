#pragma once

#include <QtCore/QByteArray>

class Report;

/// Returns the report as SVG. Each job has a diagram of time against size, both logarithmic, with a
/// line for each implementation.
QByteArray plot(const Report &report);
