#pragma once

#include "CheckContext.h"
#include "Host.h"

#include <memory>

namespace check {

using driver::Host;
using driver::LogProbe;
using driver::serverRecord;

/// Loads the checked library in a host with the logging library. A library that does not load fails
/// the check; a missing logging library is a warning.
class LoggingHost
{
public:
    explicit LoggingHost(CheckContext &context, Host::Start start = Host::Initialised);

    /// @return false if the library could not be loaded; the check has failed then
    explicit operator bool() const { return m_host->error().isEmpty(); }
    Host *operator->() const { return m_host.get(); }
    Host &operator*() const { return *m_host; }
    LogProbe &log() { return m_log; }
    /// Fails the check unless the plug-in still sends an ordinary request.
    /// @param after the cause of a failure, for the message
    void expectStillWorking(const QString &after);

private:
    CheckContext &m_context;
    LogProbe m_log;
    std::unique_ptr<Host> m_host;
};

} // namespace check
