#include "RequestContexts.h"

namespace tessaline {

std::optional<QList<QString>> completeStation(ContextRegistry<BatchRequestContext> &batches,
                                              const void *context, const QString &relayPath,
                                              const QList<QString> &failed)
{
    BatchRequestContext *const batch = batches.find(context);
    if (!batch || batch->pendingByTarget.count(relayPath) == 0)
        return std::nullopt;
    batch->failedList.append(failed); // first, because only this step may throw
    batch->removePending(relayPath);
    if (!batch->isComplete())
        return std::nullopt;
    return batches.take(context)->failedList;
}

RequestContexts &requestContexts()
{
    static RequestContexts contexts;
    return contexts;
}

} // namespace tessaline
