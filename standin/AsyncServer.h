#pragma once

#include "Server.h"

#include <functional>

namespace standin {

/// A server that executes commands elsewhere, in a thread or process of its own.
class AsyncServer
{
public:
    using Completion = std::function<void(const Answer &answer)>;

    virtual ~AsyncServer() = default;

    /// As Server::execute(), but returns at once. @p done is called once, from any thread; answers
    /// to commands for the same station come in the order of the commands. The answer shares no
    /// data with what the server keeps.
    virtual void execute(const QString &command, const QVariant &payload, const QString &relayPath,
                         const Completion &done) = 0;

    /// As Server::refuse(); called in the framework's thread.
    virtual Answer refuse(const QString &command, const QVariant &payload,
                          const QString &resultCode)
    {
        Q_UNUSED(command)
        Q_UNUSED(payload)
        return {{}, resultCode};
    }
};

} // namespace standin
