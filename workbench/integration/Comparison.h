#pragma once

#include "Recording.h"

#include <QtCore/QList>
#include <QtCore/QStringList>

namespace workbench {

struct Difference
{
    int line = 0;      ///< in the file; for an additional entry the line before it
    int otherLine = 0; ///< in the other file; 0: the entry is missing there, or there is no file
    QString expected;
    QString found;
    int cause = -1;    ///< index of the difference that caused this one; -1: none
    int followers = 0; ///< number of differences that this one caused

    /// @return the difference in words, without line and followers
    QString text() const;
    /// @return text() with the number of followers
    QString foldedText() const;
};

/// The result of comparing a recording with another one or with a plug-in.
struct Comparison
{
    QString file;
    QString otherFile; ///< empty: compared with a plug-in
    QString error;     ///< reason why nothing could be compared; empty if it could
    QStringList notes; ///< differences between the machines and sessions
    QList<Recording::BadLine> badLines;
    QList<Difference> differences;
    int inputs = 0;  ///< number of calls, connections, answers and events in both
    int outputs = 0; ///< number of commands and signals in both

    /// Adds a difference and counts it for its cause.
    void add(const Difference &difference);

    /// @return 0 without differences; 1 with differences or bad lines, or if nothing was compared;
    /// 2 after an error
    int exitCode() const;
    /// @return true if nothing was compared
    bool isEmpty() const { return inputs == 0 && outputs == 0 && differences.isEmpty(); }
    /// @return the numbers of differences and bad lines
    QString result() const;
    /// @return the numbers of compared inputs and outputs, and the result
    QString summary() const;
    /// @return notes and bad lines with their files, one per line
    QStringList remarks() const;
    /// @return the whole report, one text per line
    QStringList report() const;
};

} // namespace workbench
