#pragma once

#include <QtCore/QString>
#include <QtCore/QVariant>

class QObject;

/// The host's framework object: through it a plug-in sends commands and reaches other plug-ins.
///
/// The position of an entry in the virtual table is the contract, its name is not. Entries that
/// this plug-in does not use are therefore ordinary placeholder virtuals, and the class has no
/// virtual destructor (which takes two slots under one ABI and one under another) and no
/// overloads (which one compiler regroups): so an entry has the same number everywhere.
///
/// The host owns the object; a plug-in never deletes it. All calls are made on the GUI thread.
class FrameworkWrapperBase
{
public:
    virtual void HostEntry1() {}

    /// Second entry. Hands @p command to the station that @p relayPath names (empty: the server
    /// to which the client is connected).
    /// @param hostHandle the handle that InitialPluginBase received; may be null
    /// @param payload    parameters of the command; invalid for commands without parameters
    /// @param context    carried, never dereferenced; comes back in PluginBase::CommandProcessor
    /// @return whether the command was accepted for delivery. The answer may arrive at any later
    ///         time, and even from inside this call.
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

    /// Fourteenth entry. The object of the loaded plug-in with @p pluginID (32 hexadecimal
    /// digits), or null. The host keeps ownership.
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
