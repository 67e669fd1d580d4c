#include "TrafficSource.h"

#include "TrafficModel.h"

namespace workbench {

TrafficSource::TrafficSource(TrafficModel &model, QObject *parent)
    : QObject(parent)
    , m_model(model)
{
}

QString TrafficSource::save(const QString &path) const
{
    return Recording::write(path, header(), m_model.entries());
}

QString TrafficSource::saveShown(const QString &path, const SearchFilter *filter) const
{
    std::deque<TrafficEntry> shown;
    for (int row = 0; row < filter->count(); ++row)
        shown.push_back(m_model.entries()[static_cast<size_t>(filter->sourceRow(row))]);
    Recording::Header header = this->header();
    header.complete = header.complete && shown.size() == m_model.entries().size();
    return Recording::write(path, header, shown);
}

} // namespace workbench
