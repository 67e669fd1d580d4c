#include "Checks.h"

#include "MemoryScenario.h"
#include "Scenario.h"

#include <QtCore/QDir>

#include <algorithm>

namespace check {

std::vector<Check> scenarioChecks(int level)
{
    std::vector<Check> checks;
    const QFileInfoList files =
        QDir(QStringLiteral(":/scenarios")).entryInfoList({QStringLiteral("%1.*").arg(level)});
    for (const QFileInfo &info : files) {
        const ScenarioFile file = ScenarioFile::read(info.filePath());
        const auto play = level == 6 ? playWithFailingMemory : playScenarios;
        checks.push_back({file.name.toLatin1(), file.statement.toUtf8(),
                          [=](CheckContext &context) { play(context, file); }});
    }
    return checks;
}

const std::vector<Check> &allChecks()
{
    static const std::vector<Check> checks = [] {
        std::vector<Check> all;
        for (const auto &group : {fileChecks(), lifeChecks(), surfaceChecks(), scenarioChecks(4),
                                  behaviourChecks(), recordChecks(), listChecks(),
                                  hostileValueChecks(), hostileHostChecks(), scenarioChecks(6)})
            all.insert(all.end(), group.begin(), group.end());
        return all;
    }();
    return checks;
}

const Check *findCheck(const QByteArray &name)
{
    const std::vector<Check> &checks = allChecks();
    const auto found = std::find_if(checks.begin(), checks.end(),
                                    [&](const Check &check) { return name == check.name; });
    return found == checks.end() ? nullptr : &*found;
}

} // namespace check
