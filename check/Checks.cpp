#include "Checks.h"

#include <algorithm>

namespace check {

const std::vector<Check> &allChecks()
{
    static const std::vector<Check> checks = [] {
        std::vector<Check> all;
        for (const auto &group :
             {fileChecks(), lifeChecks(), surfaceChecks(), requestChecks(), answerChecks(),
              listChecks(), hostileValueChecks(), hostileHostChecks(), memoryChecks()})
            all.insert(all.end(), group.begin(), group.end());
        return all;
    }();
    return checks;
}

const Check *findCheck(const QString &name)
{
    const std::vector<Check> &checks = allChecks();
    const auto found = std::find_if(checks.begin(), checks.end(), [&](const Check &check) {
        return name == QLatin1String(check.name);
    });
    return found == checks.end() ? nullptr : &*found;
}

} // namespace check
