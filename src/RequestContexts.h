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

// removePending() must not allocate memory: completeStation() calls it after the last step that may
// throw, so that an answer changes a context completely or not at all.

/// Request context of a batch; collects the failures of all its stations.
struct BatchRequestContext
{
    QList<QString> failedList;                       ///< camera names or bookmark IDs
    std::map<QString, QVariantList> pendingByTarget; ///< entries sent to each pending station

    void removePending(const QString &relayPath) { pendingByTarget.erase(relayPath); }
    bool isComplete() const { return pendingByTarget.empty(); }
};

/// Request context of a query of all bookmarks.
struct QueryAllRequestContext
{
    std::vector<QString> pendingStations; ///< relay paths
    quint64 generation = 0;               ///< number of the query; a newer one supersedes it

    void removePending(const QString &relayPath)
    {
        const auto station = std::find(pendingStations.cbegin(), pendingStations.cend(), relayPath);
        if (station != pendingStations.cend())
            pendingStations.erase(station);
    }
    bool isComplete() const { return pendingStations.empty(); }
};

template <typename Context>
class ContextRegistry;

template <typename Context>
struct ContextEnd
{
    ContextRegistry<Context> *registry;
    void operator()(Context *context) const { registry->take(context); }
};

/// A new context. It ends with this pointer unless the caller releases it.
template <typename Context>
using NewContext = std::unique_ptr<Context, ContextEnd<Context>>;

/// Owns the request contexts of one kind of command while answers are outstanding.
///
/// The host receives contexts as bare pointers, and an answer may return a pointer late, repeatedly
/// or wrongly. The registry therefore looks every pointer up before it is dereferenced.
template <typename Context>
class ContextRegistry
{
public:
    /// @return a new context with this content, or null if memory is short
    NewContext<Context> create(Context content) noexcept
    {
        Context *pointer = nullptr;
        try {
            std::unique_ptr<Context> context = allocateAtFreshAddress();
            pointer = context.get();
            if (pointer) {
                m_outstanding.emplace(pointer, std::move(context));
                *pointer = std::move(content);
            }
        } catch (const std::bad_alloc &) {
            pointer = nullptr;
        }
        return {pointer, {this}};
    }

    /// @return the outstanding context at this address, owned by the registry, or null
    Context *find(const void *pointer) const
    {
        const auto found = m_outstanding.find(pointer);
        return found == m_outstanding.end() ? nullptr : found->second.get();
    }

    /// Ends the outstanding context at this address.
    /// @return the context, or null for an unknown address
    std::unique_ptr<Context> take(const void *pointer)
    {
        const auto found = m_outstanding.find(pointer);
        if (found == m_outstanding.end())
            return nullptr;
        std::unique_ptr<Context> context = std::move(found->second);
        m_outstanding.erase(found);
        m_quarantine[m_nextQuarantined++ % m_quarantine.size()] = pointer;
        return context;
    }

private:
    // Allocators tend to reuse a freed address immediately. A repeated answer would then match the
    // next request, so the last addresses are not used again.
    std::array<const void *, 128> m_quarantine{};
    std::size_t m_nextQuarantined = 0;

    std::unique_ptr<Context> allocateAtFreshAddress()
    {
        std::vector<std::unique_ptr<Context>> rejected; // freed last, or they would be reused here
        for (;;) {
            std::unique_ptr<Context> context(new (std::nothrow) Context);
            const void *const address = context.get();
            if (!address || std::find(m_quarantine.cbegin(), m_quarantine.cend(), address) ==
                                m_quarantine.cend())
                return context;
            rejected.push_back(std::move(context));
        }
    }

    std::unordered_map<const void *, std::unique_ptr<Context>> m_outstanding;
};

/// Removes one station from the pending stations of a batch and adds its failures.
/// @param failed failures at that station
/// @return all failures of the batch if this was its last answer, which also ends the context;
///         nullopt while answers are pending, or if none was expected from this station
std::optional<QList<QString>> completeStation(ContextRegistry<BatchRequestContext> &batches,
                                              const void *context, const QString &relayPath,
                                              const QList<QString> &failed);

/// The contexts of all outstanding requests. They belong to the library, not to the plug-in object:
/// an answer may arrive after the object was deleted, and reach the next object.
struct RequestContexts
{
    ContextRegistry<BatchRequestContext> addBatches;
    ContextRegistry<BatchRequestContext> deleteBatches;
    ContextRegistry<QueryAllRequestContext> allQueries;
    ContextRegistry<QString> timelineQueries; ///< the view cell's UID
};

RequestContexts &requestContexts();

} // namespace tessaline
