#include "Implementations.h"

#include "Data.h"
#include "ReferenceModel.h"

#include <QtCore/QAbstractListModel>
#include <QtCore/QSortFilterProxyModel>
#include <QtCore/QTimeZone>

using namespace Qt::StringLiterals;

namespace {

/// A model of display records with precomputed values for the sort roles.
class RecordModel : public QAbstractListModel
{
public:
    enum Role { CameraName = Qt::UserRole, Day, CameraKey, Text };

    explicit RecordModel(const QVariantList &serverRecords)
    {
        const QTimeZone zone(data::timeZone());
        const QVariantMap names = data::cameraNames();
        for (const QVariant &element : serverRecords) {
            const QVariantMap shown =
                referencemodel::displayRecord(element.toMap(), u"A"_s, names, zone);
            const auto text = [&](const QString &key) { return shown.value(key).toString(); };
            const qint64 start = shown.value(u"startTimestamp"_s).toLongLong();
            m_rows.append({text(u"cameraName"_s),
                           QDateTime::fromMSecsSinceEpoch(start, zone).date().toJulianDay(),
                           u"A/"_s + text(u"cameraID"_s),
                           text(u"cameraName"_s) + u'\n' + text(u"creator"_s) + u'\n' +
                               text(u"description"_s) + u'\n' + text(u"displayTimeRange"_s)});
        }
    }

    int rowCount(const QModelIndex &parent) const override
    {
        return parent.isValid() ? 0 : int(m_rows.size());
    }

    QVariant data(const QModelIndex &index, int role) const override
    {
        const Row &row = m_rows.at(index.row());
        switch (role) {
        case CameraName:
            return row.cameraName;
        case Day:
            return row.day;
        case CameraKey:
            return row.cameraKey;
        case Text:
            return row.text;
        default:
            return {};
        }
    }

private:
    struct Row
    {
        QString cameraName;
        qint64 day;
        QString cameraKey;
        QString text;
    };
    QList<Row> m_rows;
};

class Proxy : public Implementation
{
public:
    explicit Proxy(int count)
        : m_model(data::serverRecords(count))
    {
        m_proxy.setSourceModel(&m_model);
        m_proxy.setFilterCaseSensitivity(Qt::CaseInsensitive);
    }

    const char *name() const override { return "QSortFilterProxyModel"; }

    std::function<void()> work(Job job) override
    {
        if (job >= Job::ListOfCamera) // only the jobs before it return pages
            return {};
        return [this, filter = filterOf(job)] { getPage(filter); };
    }

private:
    void getPage(const QVariantMap &filter)
    {
        // Reset the model for each job, so that it can't reuse an earlier sort order.
        m_proxy.setSourceModel(nullptr);
        m_proxy.setSortRole(filter.value(u"groupKey"_s) == u"cameraName"_s ? RecordModel::CameraName
                                                                           : RecordModel::Day);
        const QString nodeID = filter.value(u"nodeID"_s).toString();
        m_proxy.setFilterRole(nodeID.isEmpty() ? RecordModel::Text : RecordModel::CameraKey);
        m_proxy.setFilterFixedString(nodeID.isEmpty() ? filter.value(u"text"_s).toString()
                                                      : nodeID);
        m_proxy.setSourceModel(&m_model);
        m_proxy.sort(0, filter.value(u"ascending"_s).toBool() ? Qt::AscendingOrder
                                                              : Qt::DescendingOrder);
        const int first = 50 * filter.value(u"pageNumber"_s).toInt();
        for (int row = first; row < first + 50 && row < m_proxy.rowCount(); ++row)
            m_page[row - first] = m_proxy.index(row, 0).data(RecordModel::Text).toString();
    }

    RecordModel m_model;
    QSortFilterProxyModel m_proxy;
    QString m_page[50];
};

} // namespace

std::unique_ptr<Implementation> makeProxyModel(int count)
{
    return std::make_unique<Proxy>(count);
}
