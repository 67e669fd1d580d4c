#include "ReplayProgram.h"

#include "Comparer.h"
#include "ComparisonReport.h"
#include "Options.h"
#include "PluginHost.h"
#include "Replay.h"

#include <cstdio>

namespace workbench {

namespace {

Comparison replayed(const Options &options)
{
    Comparison comparison;
    PluginHost host;
    if (PluginBase *const plugin = host.load(options.pluginPath, &comparison.error))
        comparison = replay::run(options.replayFile, *plugin);
    return comparison;
}

} // namespace

Comparison compareByOptions(const Options &options)
{
    Comparison comparison = options.compareFile.isEmpty()
                                ? replayed(options)
                                : compareRecordings(options.replayFile, options.compareFile);
    if (!options.reportFile.isEmpty()) {
        const QString problem = writeReport(options.reportFile, comparison);
        if (comparison.error.isEmpty())
            comparison.error = problem;
    }
    FILE *const stream = comparison.error.isEmpty() ? stdout : stderr;
    const QStringList report = comparison.report();
    for (const QString &line : report)
        std::fprintf(stream, "%s\n", qPrintable(line));
    std::fflush(stream);
    return comparison;
}

} // namespace workbench
