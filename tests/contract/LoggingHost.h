#pragma once

#include "CheckContext.h"
#include "Host.h"

#include <memory>

namespace check {

using driver::Host;
using driver::LogProbe;
using driver::serverRecord;
using driver::valueOf;

/// The library under check in a host with the logging library. Reports to the check what is
/// missing.
class LoggingHost
{
public:
    explicit LoggingHost(CheckContext &context, Host::Start start = Host::Initialised);

    /// @return whether there is a plug-in; if not, the check has failed
    explicit operator bool() const { return m_host->error().isEmpty(); }
    Host *operator->() const { return m_host.get(); }
    Host &operator*() const { return *m_host; }
    LogProbe &log() { return m_log; }

private:
    LogProbe m_log;
    std::unique_ptr<Host> m_host;
};

} // namespace check
