#pragma once

#include <QtCore/QString>

#include <functional>

namespace stations {
class StationNetwork;
}

namespace workbench {

/// Fills empty stations with random bookmarks. The same seed gives the same bookmarks.
class SeedData
{
public:
    static constexpr int BatchSize = 1'000; ///< bookmarks of one transaction

    /// Returns false to cancel; batches that are already stored stay.
    using ProgressCallback = std::function<bool(int made, int total)>;

    struct Result
    {
        int made = 0;
        bool cancelled = false;
        QString error; ///< message of the station that failed, with its file
    };

    /// @param now see BookmarkMaker
    SeedData(stations::StationNetwork &network, quint32 seed, qint64 now)
        : m_network(network)
        , m_seed(seed)
        , m_now(now)
    {
    }

    /// Spreads @p count bookmarks evenly over the stations.
    Result fill(int count, const ProgressCallback &progress) const;

private:
    stations::StationNetwork &m_network;
    quint32 m_seed;
    qint64 m_now;
};

} // namespace workbench
