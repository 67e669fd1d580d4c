#pragma once

#include "Recording.h"

#include <QtCore/QList>
#include <QtCore/QStringList>

class PluginBase;

namespace workbench {

/// Plays a recording against a plug-in without stations: makes the recorded calls, delivers the
/// recorded answers and events, and compares what the plug-in does.
namespace replay {

struct Difference
{
    int line = 0; ///< of the file
    QString expected;
    QString found;
};

struct Result
{
    QString file;
    QString error;     ///< why the replay could not begin; empty when it did
    QStringList notes; ///< in what this process differs from the recording's
    QList<Recording::BadLine> badLines;
    QList<Difference> differences;
    int inputs = 0;  ///< calls, connections, answers and events that were given to the plug-in
    int outputs = 0; ///< commands and signals that were compared

    /// 0: the same, 1: different, with bad lines or without any use, 2: not begun.
    int exitCode() const;
    /// Whether the recording had nothing to give to the plug-in and nothing to compare.
    bool isEmpty() const { return inputs == 0 && outputs == 0; }
    /// In words, a line each.
    QStringList report() const;
};

/// @param plugin newly loaded and not yet initialised; must not be used for anything else after
Result run(const QString &file, PluginBase &plugin);

} // namespace replay
} // namespace workbench
