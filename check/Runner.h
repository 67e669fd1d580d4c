#pragma once

#include "Options.h"
#include "Result.h"

namespace check {

struct Check;

/// Runs a check in this process.
Result runInProcess(const Check &check, const QString &library, const Options &options);

/// Runs a check in a child process of the same program, in an empty folder. A crash or a hang of
/// the child becomes a result.
Result runInChild(const Check &check, const QString &library, const Options &options);

/// Runs options.runOne in the child process and writes the result to options.resultFile.
/// @return the exit code
int runAsChild(const Options &options);

} // namespace check
