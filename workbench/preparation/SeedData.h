#pragma once

#include <QtCore/QString>

#include <functional>

namespace workbench {

class Site;

/// Fills a site whose stations are empty with bookmarks that are made up from a seed.
class SeedData
{
public:
    static constexpr int BatchSize = 1'000; ///< bookmarks of one transaction

    /// Returns false to cancel; what has been stored stays.
    using ProgressCallback = std::function<bool(int made, int total)>;

    struct Result
    {
        int made = 0;
        bool cancelled = false;
        QString error; ///< of the station that failed; names its file
    };

    /// @param now see BookmarkMaker
    SeedData(Site &site, quint32 seed, qint64 now)
        : m_site(site)
        , m_seed(seed)
        , m_now(now)
    {
    }

    /// Spreads @p count bookmarks evenly over the stations.
    Result fill(int count, const ProgressCallback &progress) const;

private:
    Site &m_site;
    quint32 m_seed;
    qint64 m_now;
};

} // namespace workbench
