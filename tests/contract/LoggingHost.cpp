#include "LoggingHost.h"

namespace check {

LoggingHost::LoggingHost(CheckContext &context, Host::Start start)
    : m_context(context)
    , m_host(std::make_unique<Host>(context.library(), start, &m_log))
{
    if (!m_log.error().isEmpty())
        context.warn(QStringLiteral("the logging library can't be loaded: ") + m_log.error());
    if (!m_host->error().isEmpty())
        context.fail(QStringLiteral("expected a library that loads, found: ") + m_host->error());
}

void LoggingHost::expectStillWorking(const QString &after)
{
    m_context.compare(
        QStringLiteral("an ordinary request after ") + after,
        QStringLiteral("send UpdateBookmark@ {BookmarkID: QString \"b\"}\n= bool true"),
        m_host->play(QStringLiteral("updateBookmark('b')")));
}

} // namespace check
