#pragma once

#include <QtCore/QObject>
#include <QtCore/QString>
#include <QtCore/QVariant>

class ConfigBase;
class FrameworkWrapperBase;
class QQmlContext;

/// Base class of every plug-in object of the client. The object lives in the GUI thread.
/// [gui-thread] [host-owned]
///
/// Keep the order of virtual functions and fields: the host calls the functions by their position
/// in the virtual table, after the eleven of QObject, and reads the fields by their offset. The
/// class has no meta-object of its own.
class PluginBase : public QObject
{
public:
    PluginBase() = default;

    /// Initialises the plug-in with its host objects.
    /// [gui-thread] [arguments: host-owned, may be null]
    /// @param hostHandle passed to each function of @p framework
    /// @return true if the plug-in is ready
    virtual bool InitialPluginBase(QQmlContext *context, void *hostHandle,
                                   FrameworkWrapperBase *framework) = 0;

    /// Delivers an event of a station. Unnamed parameters are for the host only.
    /// [gui-thread]
    /// @param relayPath the station; empty for the server to which the client is connected
    virtual void EventProcessor(QString eventName, qint64, int, int, QVariant data,
                                const QString &relayPath) = 0;
    /// Like EventProcessor(), with a configuration object.
    /// [gui-thread] [config: host-owned, may be null]
    virtual void EventProcessorEx(QString eventName, ConfigBase *config, qint64, int, int,
                                  QVariant data, const QString &relayPath) = 0;

    /// Delivers the answer to a command of FrameworkWrapperBase::SendCommand. Unnamed parameters
    /// are for the host only.
    /// [gui-thread] [may run inside SendCommand] [context: may be null]
    /// @param context    the pointer that was sent with the command
    /// @param resultCode "0" for success; any other text is a failure
    /// @param relayPath  the station that answers
    virtual void CommandProcessor(QString command, QVariant result, void *context,
                                  QString resultCode, QString, bool, const QString &relayPath) = 0;
    /// Like CommandProcessor(), with a configuration object.
    /// [gui-thread] [may run inside SendCommand] [config: host-owned, may be null]
    virtual void CommandProcessorEx(QString command, ConfigBase *config, QVariant result,
                                    void *context, QString resultCode, QString, bool,
                                    const QString &relayPath) = 0;

    /// Resets the plug-in to its initial state.
    /// [gui-thread] [context: host-owned, may be null]
    /// @return true on success
    virtual bool Init(QQmlContext *context) = 0;

    virtual void HostHook1() {}
    virtual void HostHook2() {}

    /// Notifies the plug-in of a connection to the server, also after each reconnection.
    /// [gui-thread]
    virtual void PluginServerConnected() {}

    virtual void HostHook3() {}

protected:
    void *m_hostReserved = nullptr; ///< for the host only

public:
    QString name;     ///< registered name of the plug-in; empty until InitialPluginBase
    QString pluginID; ///< 32 hexadecimal digits; empty until InitialPluginBase
};

/// The interface identifier in the metadata of each plug-in library.
#define PluginBase_iid "com.MARLUNE.UIFramework.PluginInterface"
Q_DECLARE_INTERFACE(PluginBase, PluginBase_iid)
