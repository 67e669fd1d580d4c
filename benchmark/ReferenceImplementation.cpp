#include "Implementations.h"

#include "Data.h"
#include "ReferenceModel.h"
#include "TimeShiftBufferModel.h"

#include <QtGui/QStandardItem>

using namespace Qt::StringLiterals;

namespace {

// With more bookmarks a page sorted by date, or a batch, would take minutes.
constexpr int MaxForPage = 100'000;
constexpr int MaxForBatch = 10'000;

class Reference : public Implementation
{
public:
    explicit Reference(int count)
        : m_records(data::serverRecords(count))
        , m_list(displayRecords())
    {
    }

    const char *name() const override { return "reference model"; }

    std::function<void()> work(Job job) override
    {
        switch (job) {
        case Job::ForgetAll:
            return [this] { m_list = {}; }; // clear() would not release the memory
        case Job::StoreAnswer:
            return [this] { m_list = displayRecords(); };
        case Job::GroupBatch:
            if (m_records.size() > MaxForBatch)
                return {};
            return [targets = data::batchTargets(int(m_records.size()))] {
                referencemodel::groupBatch(targets, 1, 2, u"Alarm"_s, u"rule"_s, u"alarms"_s);
            };
        case Job::ListOfCamera:
            return [this, camera = filterOf(job).value(u"nodeID"_s).toString()] {
                m_result = m_list;
                referencemodel::filterByNodeID(m_result, camera);
            };
        case Job::ListOfAll: // would only share the stored list
        case Job::ManyAnswers:
        case Job::EmptyAnswers:
            return {};
        case Job::TimelineItems:
            return [this] { fillTimeline(); };
        default:
            if (m_records.size() > MaxForPage)
                return {};
            return [this, filter = filterOf(job)] { referencemodel::filteredPage(m_list, filter); };
        }
    }

    void prepare(Job job) override
    {
        m_result = {};
        if (job == Job::StoreAnswer)
            m_list = {};
        else if (m_list.isEmpty())
            m_list = displayRecords();
    }

private:
    QVariantList displayRecords() const
    {
        QVariantList list;
        for (const QVariant &record : m_records) {
            list.append(referencemodel::displayRecord(record.toMap(), u"A"_s, m_names, m_timeZone));
        }
        return list;
    }

    void fillTimeline() const
    {
        QList<QStandardItem *> items;
        for (const QVariant &record : m_records) {
            auto *const item = new QStandardItem;
            const auto values =
                referencemodel::timelineItem(record.toMap(), u"A"_s, m_names, m_timeZone);
            for (auto value = values.cbegin(); value != values.cend(); ++value)
                item->setData(*value, value.key());
            items.append(item);
        }
        TimeShiftBufferModel(TimeShiftBufferModel::defaultRoleHash()).refillItems(items);
    }

    QVariantMap m_names = data::cameraNames();
    QTimeZone m_timeZone{data::timeZone()};
    QVariantList m_records;
    QVariantList m_list;
    QVariantList m_result;
};

} // namespace

std::unique_ptr<Implementation> makeReferenceModel(int count)
{
    return std::make_unique<Reference>(count);
}
