#pragma once

#include <QtCore/QObject>
#include <QtCore/QString>
#include <QtCore/QVariant>

class ConfigBase;
class FrameworkWrapperBase;
class QQmlContext;

/// Base class of every plug-in object of the client. The host calls the virtual operations below
/// by their position in the virtual table, after the eleven of QObject, and reads the fields by
/// their offset: keep the order of both. The class has no meta-object of its own.
///
/// The host owns the object, and makes every call on the thread in which the object lives.
class PluginBase : public QObject
{
public:
    PluginBase() = default;

    /// Hands the plug-in what it lives on. None of the pointers is owned by the plug-in; each may
    /// be null.
    /// @return whether the plug-in is ready
    virtual bool InitialPluginBase(QQmlContext *context, void *hostHandle,
                                   FrameworkWrapperBase *framework) = 0;

    /// Delivers a server event. The numbers are the host's own.
    virtual void EventProcessor(QString eventName, qint64, int, int, QVariant data,
                                const QString &relayPath) = 0;
    virtual void EventProcessorEx(QString eventName, ConfigBase *config, qint64, int, int,
                                  QVariant data, const QString &relayPath) = 0;

    /// Delivers the answer to a command sent through FrameworkWrapperBase::SendCommand.
    /// @param context    the pointer given at sending
    /// @param resultCode "0" for success, anything else is a failure
    virtual void CommandProcessor(QString command, QVariant result, void *context,
                                  QString resultCode, QString, bool, const QString &relayPath) = 0;
    virtual void CommandProcessorEx(QString command, ConfigBase *config, QVariant result,
                                    void *context, QString resultCode, QString, bool,
                                    const QString &relayPath) = 0;

    /// Puts the plug-in into its initial state. The context may be null.
    virtual bool Init(QQmlContext *context) = 0;

    virtual void HostHook1() {}
    virtual void HostHook2() {}

    /// Tells that the connection to the server is up; called again after each reconnection.
    virtual void PluginServerConnected() {}

    virtual void HostHook3() {}

protected:
    void *m_hostReserved = nullptr; ///< the host's own field

public:
    QString name;     ///< registered name of the plug-in; empty until InitialPluginBase
    QString pluginID; ///< 32 hexadecimal digits; empty until InitialPluginBase
};

/// The interface identifier that the client demands of every plug-in.
#define PluginBase_iid "com.MARLUNE.UIFramework.PluginInterface"
Q_DECLARE_INTERFACE(PluginBase, PluginBase_iid)
