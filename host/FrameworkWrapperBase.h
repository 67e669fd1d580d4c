#pragma once

#include <QtCore/QString>
#include <QtCore/QVariant>

class QObject;

/// The host's framework object. Sends a plug-in's commands and finds other plug-ins.
///
/// A call reaches the host by the entry's position in the virtual table; the name does not matter.
/// Unused entries are placeholders. The class has no virtual destructor, whose number of slots
/// differs between ABIs, and no overloads, which one compiler reorders.
///
/// [gui-thread] [host-owned]
class FrameworkWrapperBase
{
public:
    virtual void HostEntry1() {}

    /// Second entry: sends @p command to a station.
    /// [gui-thread] [reentrant: the answer may arrive before this call returns, or any time later]
    /// @param hostHandle the handle that InitialPluginBase received; may be null
    /// @param payload    parameters of the command; invalid for commands without parameters
    /// @param context    never dereferenced by the host; returned in PluginBase::CommandProcessor
    /// @param relayPath  the station; empty for the server to which the client is connected
    /// @return true if the host accepted the command
    virtual bool SendCommand(void *hostHandle, const QString &pluginID, const QString &command,
                             const QVariant &payload, void *context, bool flag,
                             const QString &relayPath)
    {
        Q_UNUSED(hostHandle)
        Q_UNUSED(pluginID)
        Q_UNUSED(command)
        Q_UNUSED(payload)
        Q_UNUSED(context)
        Q_UNUSED(flag)
        Q_UNUSED(relayPath)
        return false;
    }

    virtual void HostEntry3() {}
    virtual void HostEntry4() {}
    virtual void HostEntry5() {}
    virtual void HostEntry6() {}
    virtual void HostEntry7() {}
    virtual void HostEntry8() {}
    virtual void HostEntry9() {}
    virtual void HostEntry10() {}
    virtual void HostEntry11() {}
    virtual void HostEntry12() {}
    virtual void HostEntry13() {}

    /// Fourteenth entry: finds another plug-in.
    /// [gui-thread] [host-owned] [may be null]
    /// @param pluginID 32 hexadecimal digits
    /// @return the object of the loaded plug-in, or null if no such plug-in is loaded
    virtual QObject *FindPlugin(void *hostHandle, const QString &pluginID)
    {
        Q_UNUSED(hostHandle)
        Q_UNUSED(pluginID)
        return nullptr;
    }

protected:
    FrameworkWrapperBase() = default;
    ~FrameworkWrapperBase() = default;
    Q_DISABLE_COPY_MOVE(FrameworkWrapperBase)
};
