#pragma once

#include <QtCore/QString>
#include <QtCore/QVariant>

namespace standin {

/// What a server says to a command.
struct Answer
{
    QVariant result;
    QString resultCode = QString::fromLatin1("0"); ///< "0" is success, anything else a failure
    qint64 tookMs = 0; ///< time that the server has spent on it, without time in queues
};

/// The far side of the stand-in framework: whatever executes commands.
class Server
{
public:
    virtual ~Server() = default;

    /// Executes @p command for the station named by @p relayPath; empty is the server to which
    /// the client is connected. Must cope with a payload of any shape.
    virtual Answer execute(const QString &command, const QVariant &payload,
                           const QString &relayPath) = 0;

    /// The answer to @p command when it is made to fail with @p resultCode, unexecuted.
    virtual Answer refuse(const QString &command, const QVariant &payload,
                          const QString &resultCode)
    {
        Q_UNUSED(command)
        Q_UNUSED(payload)
        return {{}, resultCode};
    }
};

} // namespace standin
