#pragma once

#include <QtCore/QString>

#include <cstdio>

namespace workbench {

/// What the program returns.
namespace exitcode {
inline constexpr int Done = 0;
inline constexpr int CheckFailed = 1;
inline constexpr int CannotBegin = 2;
inline constexpr int TimedOut = 3;
} // namespace exitcode

/// Says on standard error why the program can't begin; returns the exit code for that.
inline int complain(const QString &error)
{
    std::fprintf(stderr, "tessaline-workbench: %s\n", qPrintable(error));
    return exitcode::CannotBegin;
}

} // namespace workbench
