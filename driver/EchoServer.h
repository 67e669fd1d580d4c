#pragma once

#include "Server.h"
#include "ServerRecord.h"

namespace driver {

using standin::serverRecord;

/// A server that executes every command successfully and answers with the bookmarks "x" and "y" at
/// the location "l". Of a batch of additions it creates two; a batch of deletions removes "x".
class EchoServer final : public standin::Server
{
public:
    standin::Answer execute(const QString &command, const QVariant &payload,
                            const QString &relayPath) override;
};

} // namespace driver
