#pragma once

#include <QtCore/QList>
#include <QtCore/QString>
#include <QtCore/QStringList>

namespace check {

class CheckContext;

/// Steps and their expected lines in the trace. docs/testing.md describes the grammar.
struct Scenario
{
    struct Step
    {
        QString text;
        int line = 0;
        bool isGiven = false; ///< prepares the scenario; its lines are not compared
        QStringList expected;
    };

    QString title;
    QList<Step> steps;

    /// @param given true for the steps that prepare the scenario, false for all others
    /// @return the steps, one on each line
    QString textOf(bool given) const;
    /// @return the expected lines of all steps
    QStringList expected() const;
};

/// A file in the program's resources with the scenarios of one check.
struct ScenarioFile
{
    QString name;      ///< name of the check
    QString statement; ///< the first line of the file, for --list
    QList<Scenario> scenarios;

    /// Reads a file. A line that violates the format ends the process with a message.
    static ScenarioFile read(const QString &path);
};

/// Plays each scenario on a new object and compares the trace of each step.
void playScenarios(CheckContext &context, const ScenarioFile &file);

} // namespace check
