#pragma once

#include "Server.h"

#include <functional>

namespace standin {

/// A server that executes commands in another thread or process.
class AsyncServer
{
public:
    using Completion = std::function<void(const Answer &answer)>;

    virtual ~AsyncServer() = default;

    /// Like Server::execute(), but returns at once. Answers to commands for one station arrive in
    /// the order of the commands.
    /// @param done called once, from any thread; its answer shares no data with the server
    virtual void execute(const QString &command, const QVariant &payload, const QString &relayPath,
                         const Completion &done) = 0;

    /// Like Server::failureAnswer(); called in the framework's thread.
    virtual Answer failureAnswer(const QString &command, const QVariant &payload,
                                 const QString &resultCode)
    {
        Q_UNUSED(command)
        Q_UNUSED(payload)
        return {{}, resultCode};
    }
};

} // namespace standin
