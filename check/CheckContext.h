#pragma once

#include "Result.h"

#include <QtCore/QString>
#include <QtCore/QStringList>

namespace check {

/// One run of a check: its input and its findings.
class CheckContext
{
public:
    CheckContext(const QString &library, quint32 seed)
        : m_library(library)
        , m_seed(seed)
    {
    }

    /// @return absolute path of the checked library
    QString library() const { return m_library; }
    /// @return the seed for random choices
    quint32 seed() const { return m_seed; }

    /// Records a failure, "expected EXPECTED, found FOUND", if @p condition is false.
    /// @return @p condition
    bool expect(bool condition, const QString &expected, const QString &found);
    /// Compares two texts line by line and records a failure with the first lines that differ.
    /// @param subject the compared thing, for the message
    /// @return true if the texts are equal
    bool compare(const QString &subject, const QString &expected, const QString &found);
    /// Records a failure, also as a breadcrumb: a crash during the check loses all other results.
    void fail(const QString &line);
    void warn(const QString &line) { m_warnings.append(line); }
    /// Makes the result "skipped", unless the check records a failure.
    void skip(const QString &reason) { m_skipped = reason; }
    /// Sets the line that is printed if the check passes.
    void summarize(const QString &line) { m_summary = line; }

    bool hasFailed() const { return !m_failures.isEmpty(); }
    Result result() const;

private:
    QString m_library;
    quint32 m_seed;
    QStringList m_failures;
    QStringList m_warnings;
    QString m_skipped;
    QString m_summary;
};

} // namespace check
