#include "CheckContext.h"

#include "Breadcrumbs.h"

namespace check {

using namespace driver;

namespace {

QString shortened(const QString &text)
{
    constexpr qsizetype MaxLength = 400;
    if (text.size() <= MaxLength)
        return text;
    return text.first(MaxLength) + QStringLiteral("... (%1 characters)").arg(text.size());
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

bool CheckContext::expect(bool condition, const QString &expected, const QString &found)
{
    if (!condition)
        fail(difference(expected, found));
    return condition;
}

bool CheckContext::compare(const QString &subject, const QString &expected, const QString &found)
{
    if (expected == found)
        return true;
    const QStringList left = linesOf(expected);
    const QStringList right = linesOf(found);
    qsizetype line = 0;
    while (line < qMin(left.size(), right.size()) && left.at(line) == right.at(line))
        ++line;
    fail(subject + QLatin1String(": ") + difference(lineOf(left, line), lineOf(right, line)));
    return false;
}

void CheckContext::fail(const QString &line)
{
    leaveBreadcrumb(QStringLiteral("failure: ") + line);
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
