#pragma once

#include <QtCore/QList>
#include <QtCore/QString>
#include <QtCore/QStringList>

namespace check {

class CheckContext;

/// Some steps and the lines that they must leave in the trace. docs/testing.md has the grammar.
struct Scenario
{
    struct Step
    {
        QString text;
        int line = 0;
        bool isGiven = false; ///< prepares the scenario; its lines do not matter
        QStringList expected;
    };

    QString title;
    QList<Step> steps;

    /// The steps that prepare the scenario, or all others, one a line.
    QString textOf(bool given) const;
    /// The lines of all steps.
    QStringList expected() const;
};

/// A file in the program's resources with scenarios for one check.
struct ScenarioFile
{
    QString name;   ///< of the check
    QString proves; ///< in one line
    QList<Scenario> scenarios;

    /// Reads a file. A line that does not fit the format ends the process.
    static ScenarioFile read(const QString &path);
};

/// Plays each scenario on an object of its own and compares the trace of each step.
void playScenarios(CheckContext &context, const ScenarioFile &file);

} // namespace check
