#include "SeedData.h"

#include "BookmarkMaker.h"
#include "StationNetwork.h"

#include <algorithm>

namespace workbench {

SeedData::Result SeedData::fill(int count, const ProgressCallback &progress) const
{
    Result result;
    const QList<stations::Station *> stations = m_network.stations();
    for (qsizetype i = 0; i < stations.size(); ++i) {
        stations::Station *const station = stations.at(i);
        BookmarkMaker maker(station->config(), m_seed, m_now);
        // Differences of rounded sums add up to exactly @p count.
        const auto share = [&](qsizetype n) { return qint64(count) * n / stations.size(); };
        for (qint64 left = share(i + 1) - share(i); left > 0; left -= BatchSize) {
            const QList<stations::Bookmark> batch =
                maker.make(int(std::min<qint64>(left, BatchSize)));
            if (!station->insert(batch)) {
                result.error = station->lastError();
                return result;
            }
            result.made += int(batch.size());
            if (!progress(result.made, count)) {
                result.cancelled = true;
                return result;
            }
        }
    }
    return result;
}

} // namespace workbench
