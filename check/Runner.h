#pragma once

#include "Options.h"
#include "Result.h"

namespace check {

struct Check;

/// Carries out a check in this process.
Result runHere(const Check &check, const QString &library, const Options &options);

/// Carries it out in a process of its own, so that a crash or a hang is a result like any other:
/// the checker starts itself for this one check, in an empty folder.
Result runInChild(const Check &check, const QString &library, const Options &options);

/// The child's side: runs options.runOne and writes the result to options.resultFile.
/// @return the exit code
int runAsChild(const Options &options);

} // namespace check
