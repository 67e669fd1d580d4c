#pragma once

#include <QtCore/QByteArray>

#include <functional>
#include <vector>

namespace check {

class CheckContext;

/// One check: a name, what it proves, and the function that carries it out.
struct Check
{
    QByteArray name;   ///< "LEVEL.WORDS", unique
    QByteArray proves; ///< one line for people
    std::function<void(CheckContext &context)> run;

    /// The number in front of the name, 1 to 6.
    int level() const { return name.at(0) - '0'; }
};

// One group for each topic; each is the table at the end of its file.
std::vector<Check> fileChecks();
std::vector<Check> lifeChecks();
std::vector<Check> surfaceChecks();
std::vector<Check> behaviourChecks();
std::vector<Check> recordChecks();
std::vector<Check> listChecks();
std::vector<Check> hostileValueChecks();
std::vector<Check> hostileHostChecks();
/// Those of the level that are written as scenarios.
std::vector<Check> scenarioChecks(int level);

/// All checks, in the order of their levels.
const std::vector<Check> &allChecks();

/// The check that the library can be loaded; without that none from level 2 on can pass.
inline constexpr const char *loadCheck = "2.load";

/// @return the check of that name, or null
const Check *findCheck(const QByteArray &name);

} // namespace check
