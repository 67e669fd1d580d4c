#pragma once

#include <QtCore/QString>
#include <QtCore/QVariant>

namespace standin {

/// A server's answer to a command.
struct Answer
{
    QVariant result;
    QString resultCode = QString::fromLatin1("0"); ///< "0" is success, anything else a failure
    qint64 tookMs = 0; ///< milliseconds that the server needed, without time in queues
};

/// Executes the commands that the stand-in framework accepts.
class Server
{
public:
    virtual ~Server() = default;

    /// Executes a command and returns the answer.
    /// @param payload   any value; an implementation must not rely on its type
    /// @param relayPath the station; empty for the server to which the client is connected
    virtual Answer execute(const QString &command, const QVariant &payload,
                           const QString &relayPath) = 0;

    /// Returns the answer to a command that is not executed but fails with @p resultCode.
    virtual Answer failureAnswer(const QString &command, const QVariant &payload,
                                 const QString &resultCode)
    {
        Q_UNUSED(command)
        Q_UNUSED(payload)
        return {{}, resultCode};
    }
};

} // namespace standin
