#include "LoggingHost.h"

namespace check {

LoggingHost::LoggingHost(CheckContext &context, Host::Start start)
    : m_host(std::make_unique<Host>(context.library(), start, &m_log))
{
    if (!m_log.error().isEmpty())
        context.warn(QStringLiteral("the logging library is not there: ") + m_log.error());
    if (!m_host->error().isEmpty())
        context.fail(QStringLiteral("expected a plug-in, found: ") + m_host->error());
}

} // namespace check
