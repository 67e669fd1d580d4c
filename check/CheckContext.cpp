#include "CheckContext.h"

#include "Breadcrumbs.h"

namespace check {

using namespace driver;

namespace {

/// Long values are of no use on one line.
QString shortened(const QString &text)
{
    constexpr qsizetype Longest = 400;
    if (text.size() <= Longest)
        return text;
    return text.first(Longest) + QStringLiteral("... (%1 characters)").arg(text.size());
}

QString difference(const QString &expected, const QString &found)
{
    return QStringLiteral("expected %1, found %2").arg(shortened(expected), shortened(found));
}

QStringList linesOf(const QString &text)
{
    return text.isEmpty() ? QStringList() : text.split(u'\n');
}

QString lineOf(const QStringList &lines, qsizetype line)
{
    if (line >= lines.size())
        return QStringLiteral("nothing");
    return lines.at(line).isEmpty() ? QStringLiteral("an empty line") : lines.at(line);
}

} // namespace

bool CheckContext::expect(bool holds, const QString &expected, const QString &found)
{
    if (!holds)
        fail(difference(expected, found));
    return holds;
}

bool CheckContext::compare(const QString &what, const QString &expected, const QString &found)
{
    if (expected == found)
        return true;
    const QStringList left = linesOf(expected);
    const QStringList right = linesOf(found);
    qsizetype line = 0;
    while (line < qMin(left.size(), right.size()) && left.at(line) == right.at(line))
        ++line;
    fail(what + QLatin1String(": ") + difference(lineOf(left, line), lineOf(right, line)));
    return false;
}

void CheckContext::fail(const QString &line)
{
    leaveBreadcrumb(QStringLiteral("a failure: ") + line);
    m_failures.append(line);
}

Result CheckContext::result() const
{
    Result result;
    QStringList lines = m_failures + m_warnings;
    if (!m_failures.isEmpty())
        result.status = Status::Fail;
    else if (!m_skipped.isEmpty())
        result.status = Status::Skipped;
    else
        result.status = m_warnings.isEmpty() ? Status::Pass : Status::Warning;
    if (result.status == Status::Skipped)
        lines.prepend(m_skipped);
    if (result.status == Status::Pass)
        lines.prepend(m_summary);
    result.line = lines.takeFirst();
    result.more = lines;
    return result;
}

} // namespace check
