#pragma once

#include <QtCore/QString>

#include <cstdio>

namespace workbench {

/// The exit codes of the program.
namespace exitcode {
inline constexpr int Done = 0;
inline constexpr int CheckFailed = 1;
inline constexpr int CannotStart = 2;
inline constexpr int TimedOut = 3;
} // namespace exitcode

/// Prints on standard error why the program can't start.
/// @return the exit code CannotStart
inline int reportError(const QString &error)
{
    std::fprintf(stderr, "tessaline-workbench: %s\n", qPrintable(error));
    return exitcode::CannotStart;
}

} // namespace workbench
