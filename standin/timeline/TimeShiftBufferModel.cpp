#include "TimeShiftBufferModel.h"

#include "CoveredRanges.h"
#include "TimelineControl.h"
#include "TimelineListModel.h"

#include <QtCore/QPointer>
#include <QtCore/QStringList>
#include <QtGui/QStandardItem>

#include <initializer_list>
#include <utility>

namespace {

using Observer = std::function<void(const TimeShiftBufferModel *, const QString &)>;

Observer &observer()
{
    static Observer theObserver;
    return theObserver;
}

/// Passes an operation and its arguments to the observer, if there is one.
template <typename Arguments>
void notifyObserver(const TimeShiftBufferModel *model, const char *operation, Arguments arguments)
{
    // A copy, because the observer may install another one.
    if (const Observer notified = observer())
        notified(model, QLatin1String(operation) + u'(' + arguments() + u')');
}

QString numbers(std::initializer_list<qint64> values)
{
    QStringList texts;
    for (const qint64 value : values)
        texts.append(QString::number(value));
    return texts.join(QLatin1String(", "));
}

QString identifiers(const QList<QStandardItem *> &items)
{
    QStringList texts;
    for (const QStandardItem *item : items) {
        texts.append(item ? item->data(TimeShiftBufferModel::ItemIdRole).toString()
                          : QString::fromLatin1("null"));
    }
    return texts.join(u' ');
}

} // namespace

void standin::timeline::observe(Observer newObserver)
{
    observer() = std::move(newObserver);
}

class TimeShiftBufferModel::Private
{
public:
    standin::TimelineListModel *listModel = nullptr; ///< child of the public object
    standin::CoveredRanges covered;
    quint64 clearings = 0;
};

TimeShiftBufferModel::TimeShiftBufferModel(QHash<int, QByteArray> roleNames, QObject *parent)
    : QObject(parent)
    , d(std::make_unique<Private>())
{
    // A parent keeps JavaScript engines from collecting the list model.
    d->listModel = new standin::TimelineListModel(std::move(roleNames), this);
}

TimeShiftBufferModel::~TimeShiftBufferModel() = default;

QHash<int, QByteArray> TimeShiftBufferModel::defaultRoleHash()
{
    // Not QByteArrayLiteral: QML engines store the role names and may outlive this library.
    return {
        {ItemIdRole, QByteArray("itemIDRole")},
        {ChannelIdRole, QByteArray("channelIDRole")},
        {Qt::UserRole + 3, QByteArray("channelNameRole")},
        {Qt::UserRole + 4, QByteArray("titleRole")},
        {StartTimestampRole, QByteArray("startTimestampRole")},
        {Qt::UserRole + 6, QByteArray("startOffsetRole")},
        {Qt::UserRole + 7, QByteArray("itemTypeRole")},
        {EndTimestampRole, QByteArray("endTimestampRole")},
        {Qt::UserRole + 9, QByteArray("endOffsetRole")},
        {Qt::UserRole + 10, QByteArray("colorRole")},
        {Qt::UserRole + 11, QByteArray("selectedRole")},
        {Qt::UserRole + 12, QByteArray("lockedRole")},
    };
}

QObject *TimeShiftBufferModel::getModel() const
{
    return d->listModel;
}

void TimeShiftBufferModel::setBoundary(qint64 head, qint64 tail, qint64 third, qint64 fourth)
{
    notifyObserver(this, "setBoundary", [&] { return numbers({head, tail, third, fourth}); });

    // Mark all gaps as requested before the first slot runs: a slot that moves the range must not
    // request them again. Stop if a slot clears the model.
    const std::vector<standin::TimeRange> gaps = d->covered.cover(head, tail);
    const quint64 clearings = d->clearings;
    const QPointer<TimeShiftBufferModel> self(this);
    for (const standin::TimeRange &gap : gaps) {
        Q_EMIT needItems(gap.first, gap.last);
        if (!self || d->clearings != clearings)
            return;
    }
}

void TimeShiftBufferModel::clear()
{
    notifyObserver(this, "clear", [] { return QString(); });
    ++d->clearings;
    d->covered.clear();
    d->listModel->removeAll();
}

void TimeShiftBufferModel::refillItems(QList<QStandardItem *> items)
{
    notifyObserver(this, "refillItems", [&] { return identifiers(items); });
    d->listModel->merge(items);
}

void TimeShiftBufferModel::removeItems(QList<QString> itemIds)
{
    notifyObserver(this, "removeItems", [&] { return itemIds.join(u' '); });
    d->listModel->remove(itemIds);
}
