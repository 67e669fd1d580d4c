#pragma once

#include <QtCore/QList>
#include <QtCore/QString>

#include <vector>

namespace check {

class Trial;

/// One check: a name, what it proves, and the function that carries it out.
struct Check
{
    const char *name;   ///< "LEVEL.WORDS", unique
    const char *proves; ///< one line for people
    void (*run)(Trial &trial);

    /// The number in front of the name, 1 to 6.
    int level() const { return name[0] - '0'; }
};

// One group for each level; each is the table at the end of its file.
std::vector<Check> fileChecks();
std::vector<Check> lifeChecks();
std::vector<Check> surfaceChecks();
std::vector<Check> requestChecks();
std::vector<Check> answerChecks();
std::vector<Check> listChecks();
std::vector<Check> hostileValueChecks();
std::vector<Check> hostileHostChecks();
std::vector<Check> memoryChecks();

/// All checks, in the order of their levels.
const std::vector<Check> &allChecks();

/// The check that the library can be loaded; without that none from level 2 on can pass.
inline constexpr const char *loadCheck = "2.load";

/// The check of that name, or null.
const Check *findCheck(const QString &name);

} // namespace check
