#include "ReplayProgram.h"

#include "Options.h"
#include "PluginHost.h"
#include "ReplayReport.h"

#include <cstdio>

namespace workbench {

replay::Result playRecording(const Options &options)
{
    replay::Result result;
    PluginHost host;
    if (PluginBase *const plugin = host.load(options.pluginPath, &result.error))
        result = replay::run(options.replayFile, *plugin);
    if (!options.reportFile.isEmpty()) {
        const QString problem = replay::writeReport(options.reportFile, result);
        if (result.error.isEmpty())
            result.error = problem;
    }
    FILE *const stream = result.error.isEmpty() ? stdout : stderr;
    const QStringList report = result.report();
    for (const QString &line : report)
        std::fprintf(stream, "%s\n", qPrintable(line));
    std::fflush(stream);
    return result;
}

} // namespace workbench
