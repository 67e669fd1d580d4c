#pragma once

#include <QtCore/QByteArray>

class Report;

/// The report as SVG: a diagram for each job, time against size, both logarithmic, a line for each
/// contestant.
QByteArray plot(const Report &report);
