#include "RequestContexts.h"

namespace tessaline {

std::optional<QList<QString>> settleBatch(ContextRegistry<BatchRequestContext> &batches,
                                          const void *context, const QString &relayPath,
                                          const QList<QString> &failed)
{
    BatchRequestContext *const batch = batches.find(context);
    if (!batch || batch->pendingByTarget.remove(relayPath) == 0)
        return std::nullopt;
    batch->failedList.append(failed);
    if (!batch->pendingByTarget.isEmpty())
        return std::nullopt;
    return batches.take(context)->failedList;
}

RequestContexts &requestContexts()
{
    static RequestContexts contexts;
    return contexts;
}

} // namespace tessaline
