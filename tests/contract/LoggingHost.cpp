#include "LoggingHost.h"

namespace check {

LoggingHost::LoggingHost(CheckContext &context, Host::Start start)
    : m_host(std::make_unique<Host>(context.library(), start, &m_log))
{
    if (!m_log.error().isEmpty())
        context.warn(QStringLiteral("the logging library can't be loaded: ") + m_log.error());
    if (!m_host->error().isEmpty())
        context.fail(QStringLiteral("expected a library that loads, found: ") + m_host->error());
}

} // namespace check
