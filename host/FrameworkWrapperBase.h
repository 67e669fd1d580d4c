#pragma once

#include <QtCore/QString>
#include <QtCore/QVariant>

class QObject;

/// Sends a plug-in's commands and finds other plug-ins.
/// [gui-thread] [host-owned]
///
/// Keep the order of the functions: the host identifies them by their position in the virtual
/// table, not by name. HostEntry functions are placeholders. The class has no virtual destructor,
/// because the number of its slots differs between ABIs, and no overloads, because one compiler
/// reorders them.
class FrameworkWrapperBase
{
public:
    virtual void HostEntry1() {}

    /// Second entry: sends a command to a station. The answer arrives in
    /// PluginBase::CommandProcessor, inside this call or at any time later.
    /// [gui-thread] [hostHandle, context: may be null]
    /// @param hostHandle the handle that InitialPluginBase received
    /// @param pluginID   identifier of the sender, 32 hexadecimal digits
    /// @param command    name of the command
    /// @param payload    parameters of the command; invalid for commands without parameters
    /// @param context    returned with the answer and never dereferenced by the host
    /// @param flag       for the host only; pass false
    /// @param relayPath  the station; empty for the server to which the client is connected
    /// @return true if the host accepted the command; otherwise no answer arrives
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
    /// [gui-thread] [hostHandle: may be null] [result: host-owned, may be null]
    /// @param hostHandle the handle that InitialPluginBase received
    /// @param pluginID   identifier of the other plug-in, 32 hexadecimal digits
    /// @return the object of that plug-in, or null if it is not loaded
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
