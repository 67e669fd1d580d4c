#include "Implementations.h"

#include "Data.h"
#include "TimeShiftBufferModel.h"

#include <QtGui/QStandardItem>

#include <cstring>

using namespace Qt::StringLiterals;

namespace {

/// A lower bound: reads every byte of the searched texts and creates the requested maps and items,
/// with constant values.
class LowerBound : public Implementation
{
public:
    explicit LowerBound(int count)
        : m_count(count)
    {
        const QVariantMap names = data::cameraNames();
        const QVariantList records = data::serverRecords(count);
        for (const QVariant &element : records) {
            const QVariantMap record = element.toMap();
            m_text +=
                "Harbour - " +
                names.value(u"A/"_s + record.value(u"CameraID"_s).toString()).toString().toUtf8() +
                record.value(u"Creator"_s).toString().toUtf8() +
                record.value(u"Description"_s).toString().toUtf8() + "08:00:00 - 08:05:00";
        }
    }

    const char *name() const override { return "lower bound"; }

    std::function<void()> work(Job job) override
    {
        switch (job) {
        case Job::TextOfFew:
        case Job::TextOfAll:
        case Job::OneMoreLetter:
            return [this] {
                if (std::memchr(m_text.constData(), '\1', size_t(m_text.size())))
                    qFatal("LowerBound: the texts must not contain the byte 1");
            };
        case Job::StoreAnswer:
            return [this] { m_maps = maps(13); };
        case Job::GroupBatch:
            return [this] { maps(7); };
        case Job::TimelineItems:
            return [this] { makeItems(); };
        default:
            return {};
        }
    }

    void prepare(Job job) override
    {
        if (job == Job::StoreAnswer)
            m_maps.clear();
    }

private:
    QVariantList maps(int entries) const
    {
        QStringList keys;
        for (int i = 0; i < entries; ++i)
            keys.append(u"aKeyOfSomeLetters"_s + QChar(u'a' + i));
        const QVariant value(u"text"_s);
        QVariantList list;
        list.reserve(m_count);
        for (int i = 0; i < m_count; ++i) {
            QVariantMap map;
            for (const QString &key : std::as_const(keys))
                map.insert(map.cend(), key, value);
            list.append(map);
        }
        return list;
    }

    void makeItems() const
    {
        const QVariant value(u"text"_s);
        QList<QStandardItem *> items;
        for (int i = 0; i < m_count; ++i) {
            auto *const item = new QStandardItem;
            item->setData(QString::number(i), TimeShiftBufferModel::ItemIdRole);
            for (int role = 1; role < 18; ++role)
                item->setData(value, TimeShiftBufferModel::ItemIdRole + role);
            items.append(item);
        }
        TimeShiftBufferModel(TimeShiftBufferModel::defaultRoleHash()).refillItems(items);
    }

    int m_count;
    QByteArray m_text;
    QVariantList m_maps;
};

} // namespace

std::unique_ptr<Implementation> makeLowerBound(int count)
{
    return std::make_unique<LowerBound>(count);
}
