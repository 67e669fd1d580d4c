#pragma once

#include "Result.h"

#include <QtCore/QString>
#include <QtCore/QStringList>

namespace check {

/// One check being carried out: what it looks at, and what it finds.
class CheckContext
{
public:
    CheckContext(const QString &library, quint32 seed)
        : m_library(library)
        , m_seed(seed)
    {
    }

    /// The plug-in file.
    QString library() const { return m_library; }
    /// Where random choices begin.
    quint32 seed() const { return m_seed; }

    /// Notes a failure unless @p holds.
    /// @return whether it held
    bool expect(bool holds, const QString &expected, const QString &found);
    /// The same for two texts. Of texts with several lines the first that differ are shown.
    /// @param what where the difference is, in front of it
    bool compare(const QString &what, const QString &expected, const QString &found);
    /// Records a failure, also as a breadcrumb, as the process may end before the check does.
    void fail(const QString &line);
    void warn(const QString &line) { m_warnings.append(line); }
    /// Ends the check without a verdict; failures noted before still count.
    void skip(const QString &reason) { m_skipped = reason; }
    /// What a passing check says for itself.
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
