#pragma once

#include "Recording.h"

#include <QtCore/QList>
#include <QtCore/QStringList>

namespace workbench {

struct Difference
{
    int line = 0;      ///< of the file; of an additional entry the line before it
    int otherLine = 0; ///< of the other file; 0: the entry is missing there, or there is no file
    QString expected;
    QString found;
    int cause = -1;    ///< index of the difference from which this one follows; -1: none
    int followers = 0; ///< how many follow from this one

    /// In words, without the line and the followers.
    QString text() const;
    /// With the number of followers.
    QString foldedText() const;
};

/// The outcome of the comparison of a recording with another one or with a plug-in.
struct Comparison
{
    QString file;
    QString otherFile; ///< empty: a plug-in
    QString error;     ///< why nothing could be compared; empty otherwise
    QStringList notes; ///< differences between the machines and sessions
    QList<Recording::BadLine> badLines;
    QList<Difference> differences;
    int inputs = 0;  ///< calls, connections, answers and events that both have
    int outputs = 0; ///< commands and signals that both have

    /// Counts it for its cause, too.
    void add(const Difference &difference);

    /// 0: the same, 1: different, with bad lines or without any use, 2: not begun.
    int exitCode() const;
    /// Whether nothing was compared.
    bool isEmpty() const { return inputs == 0 && outputs == 0 && differences.isEmpty(); }
    /// The numbers of differences and bad lines.
    QString result() const;
    /// The numbers of what was compared, and the result.
    QString summary() const;
    /// Notes and bad lines, with their files, a line each.
    QStringList remarks() const;
    /// All in words, a line each.
    QStringList report() const;
};

} // namespace workbench
