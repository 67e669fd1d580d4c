#include "ReplayProgram.h"

#include "Options.h"
#include "PluginHost.h"

#include <cstdio>

namespace workbench {

replay::Result playRecording(const Options &options)
{
    replay::Result result;
    PluginHost host;
    if (PluginBase *const plugin = host.load(options.pluginPath, &result.error))
        result = replay::run(options.replayFile, *plugin);
    FILE *const stream = result.error.isEmpty() ? stdout : stderr;
    const QStringList report = result.report();
    for (const QString &line : report)
        std::fprintf(stream, "%s\n", qPrintable(line));
    std::fflush(stream);
    return result;
}

} // namespace workbench
