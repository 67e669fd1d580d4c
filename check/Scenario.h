#pragma once

#include <QtCore/QString>

#include <initializer_list>

namespace check {

class Trial;

/// Some steps and all that the plug-in makes of them, written as Host::play() reads and gives them.
struct Scenario
{
    const char *title;
    const char *before; ///< steps whose trace is of no interest
    const char *steps;
    const char *trace; ///< lines; indentation does not count
};

/// The lines of a trace as scenarios write it, without blanks around them and empty lines.
QString withoutIndentation(const char *text);

/// Plays each scenario on an object of its own and compares the traces.
void playScenarios(Trial &trial, std::initializer_list<Scenario> scenarios);

} // namespace check
