#pragma once

#include "Server.h"
#include "ServerRecord.h"

namespace driver {

using standin::serverRecord;

/// A server that answers every command with success and with the same records: the bookmarks "x"
/// and "y" at the location "l". A batch of additions creates both, a deletion deletes "x".
class EchoServer final : public standin::Server
{
public:
    standin::Answer execute(const QString &command, const QVariant &payload,
                            const QString &relayPath) override;
};

} // namespace driver
