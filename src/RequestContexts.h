#pragma once

#include <QtCore/QList>
#include <QtCore/QString>
#include <QtCore/QVariant>

#include <algorithm>
#include <array>
#include <cstddef>
#include <map>
#include <memory>
#include <new>
#include <optional>
#include <unordered_map>
#include <utility>
#include <vector>

namespace tessaline {

// What an answer takes out of a context leaves containers that need no memory for it, so that an
// answer is either noted as a whole or not at all.

/// Travels with every command of one batch and gathers what failed.
struct BatchRequestContext
{
    QList<QString> failedList; ///< camera names or bookmark IDs
    std::map<QString, QVariantList>
        pendingByTarget; ///< what each station not yet heard of was sent
};

/// Travels with every command of one query of all bookmarks.
struct QueryAllRequestContext
{
    std::vector<QString> pendingStations; ///< relay paths of the stations not yet heard of
    quint64 generation = 0;               ///< number of the query; a newer one supersedes it

    void noteAnswer(const QString &relayPath)
    {
        const auto station = std::find(pendingStations.cbegin(), pendingStations.cend(), relayPath);
        if (station != pendingStations.cend())
            pendingStations.erase(station);
    }
};

/// Owns the request contexts of one kind of command while answers are outstanding.
///
/// Contexts leave the library as bare pointers, and what comes back may be late, doubled, of
/// another request or never handed out at all: only a pointer that is found here is ever read.
template <typename Context>
class ContextRegistry
{
public:
    /// A new context with this content, or null when memory is short.
    Context *create(Context content) noexcept
    {
        try {
            std::unique_ptr<Context> context = allocateAtFreshAddress();
            Context *const pointer = context.get();
            if (pointer) {
                m_outstanding.emplace(pointer, std::move(context));
                *pointer = std::move(content);
            }
            return pointer;
        } catch (const std::bad_alloc &) {
            return nullptr;
        }
    }

    /// The outstanding context at this address, or null. The registry keeps it.
    Context *find(const void *pointer) const
    {
        const auto found = m_outstanding.find(pointer);
        return found == m_outstanding.end() ? nullptr : found->second.get();
    }

    /// Gives the outstanding context at this address away, to be read once more or dropped; null
    /// for an unknown one.
    std::unique_ptr<Context> take(const void *pointer)
    {
        const auto found = m_outstanding.find(pointer);
        if (found == m_outstanding.end())
            return nullptr;
        std::unique_ptr<Context> context = std::move(found->second);
        m_outstanding.erase(found);
        m_retired[m_nextRetired++ % m_retired.size()] = pointer;
        return context;
    }

private:
    // An allocator likes to hand out at once what has just been freed. A doubled answer would then
    // settle the request that follows, so the last addresses are not used again.
    std::array<const void *, 128> m_retired{};
    std::size_t m_nextRetired = 0;

    std::unique_ptr<Context> allocateAtFreshAddress()
    {
        std::vector<std::unique_ptr<Context>> refused; // held, or they would be offered again
        for (;;) {
            std::unique_ptr<Context> context(new (std::nothrow) Context);
            const void *const address = context.get();
            if (!address ||
                std::find(m_retired.cbegin(), m_retired.cend(), address) == m_retired.cend())
                return context;
            refused.push_back(std::move(context));
        }
    }

    std::unordered_map<const void *, std::unique_ptr<Context>> m_outstanding;
};

/// Notes the answer of one station to a batch.
/// @param failed what that station could not do
/// @return all failures of the batch when this was its last answer, which also ends the context;
///         nothing when answers are still to come, or when none was expected from this station
std::optional<QList<QString>> settleBatch(ContextRegistry<BatchRequestContext> &batches,
                                          const void *context, const QString &relayPath,
                                          const QList<QString> &failed);

/// The contexts of all requests under way. They belong to the library, not to the plug-in object:
/// an answer may come after the object is gone, and reach the next one.
struct RequestContexts
{
    ContextRegistry<BatchRequestContext> addBatches;
    ContextRegistry<BatchRequestContext> deleteBatches;
    ContextRegistry<QueryAllRequestContext> allQueries;
    ContextRegistry<QString> timelineQueries; ///< the view cell's UID
};

RequestContexts &requestContexts();

} // namespace tessaline
