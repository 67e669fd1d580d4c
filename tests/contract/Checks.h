#pragma once

#include <QtCore/QByteArray>

#include <functional>
#include <vector>

namespace check {

class CheckContext;

/// One check of the contract.
struct Check
{
    QByteArray name;      ///< unique, "LEVEL.WORDS"
    QByteArray statement; ///< the statement of the contract that it checks, one line for --list
    std::function<void(CheckContext &context)> run;

    /// @return the number at the start of the name, 1 to 6
    int level() const { return name.at(0) - '0'; }
};

// Each group is the table at the end of its source file.
std::vector<Check> fileChecks();
std::vector<Check> lifeChecks();
std::vector<Check> surfaceChecks();
std::vector<Check> behaviourChecks();
std::vector<Check> recordChecks();
std::vector<Check> listChecks();
std::vector<Check> hostileValueChecks();
std::vector<Check> hostileHostChecks();
/// @return one check for each scenario file of a level
std::vector<Check> scenarioChecks(int level);

/// @return all checks, in the order of their levels
const std::vector<Check> &allChecks();

/// Checks that the library can be loaded. If it fails, the checker runs no other check of level 2
/// or above.
inline constexpr const char *loadCheck = "2.load";

/// @return the check with that name, or null
const Check *findCheck(const QByteArray &name);

} // namespace check
