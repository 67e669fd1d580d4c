#include "CameraMarks.h"

#include <algorithm>
#include <utility>

namespace workbench {

CameraMarks::CameraMarks(QObject *parent)
    : QObject(parent)
{
}

void CameraMarks::setSource(QAbstractItemModel *source)
{
    if (m_source)
        m_source->disconnect(this);
    m_source = source;
    if (source) {
        connect(source, &QAbstractItemModel::rowsInserted, this, &CameraMarks::noteInserted);
        connect(source, &QAbstractItemModel::rowsRemoved, this, &CameraMarks::noteRemoved);
        connect(source, &QAbstractItemModel::dataChanged, this, &CameraMarks::noteChanged);
        connect(source, &QAbstractItemModel::modelReset, this, &CameraMarks::readAll);
        connect(source, &QAbstractItemModel::layoutChanged, this, &CameraMarks::readAll);
        connect(source, &QAbstractItemModel::rowsMoved, this, &CameraMarks::readAll);
        connect(source, &QObject::destroyed, this, [this] { setSource(nullptr); });
    }
    readAll();
}

void CameraMarks::setCamera(const QString &cameraID, const QString &relayPath)
{
    m_cameraID = cameraID;
    m_relayPath = relayPath;
    readAll();
}

void CameraMarks::readAll()
{
    m_newCount = 0;
    m_entries.assign(m_source ? size_t(m_source->rowCount()) : 0, Entry());
    markOutdated();
}

void CameraMarks::noteInserted(const QModelIndex &, int first, int last)
{
    if (first != m_newFirst + m_newCount)
        makeRoom();
    if (m_newCount == 0)
        m_newFirst = first;
    m_newCount += last - first + 1;
    markOutdated();
}

void CameraMarks::noteRemoved(const QModelIndex &, int first, int last)
{
    makeRoom();
    m_entries.erase(m_entries.begin() + first, m_entries.begin() + last + 1);
    markOutdated();
}

void CameraMarks::noteChanged(const QModelIndex &first, const QModelIndex &last)
{
    makeRoom();
    std::fill(m_entries.begin() + first.row(), m_entries.begin() + last.row() + 1, Entry());
    markOutdated();
}

void CameraMarks::makeRoom()
{
    m_entries.insert(m_entries.begin() + m_newFirst, size_t(m_newCount), Entry());
    m_newFirst = 0;
    m_newCount = 0;
}

void CameraMarks::markOutdated()
{
    m_outdated = true;
    Q_EMIT outdated();
}

const std::vector<Mark> &CameraMarks::marks()
{
    if (!std::exchange(m_outdated, false))
        return m_marks;
    makeRoom();
    readRoles();
    m_marks.clear();
    for (int row = 0; row < int(m_entries.size()); ++row) {
        Entry &entry = m_entries[size_t(row)];
        if (entry.state == State::Unread)
            read(entry, row);
        if (entry.state == State::Own)
            m_marks.push_back({entry.start, entry.end, row});
    }
    const auto startsEarlier = [](const Mark &a, const Mark &b) { return a.start < b.start; };
    if (!std::is_sorted(m_marks.cbegin(), m_marks.cend(), startsEarlier))
        std::stable_sort(m_marks.begin(), m_marks.end(), startsEarlier);
    return m_marks;
}

QString CameraMarks::text(int mark, const QByteArray &roleName)
{
    return value(marks().at(size_t(mark)).row, roleName).toString();
}

/// Reads the roles again each time, because some models set them with their first row.
void CameraMarks::readRoles()
{
    m_roles.clear();
    const auto names = m_source ? m_source->roleNames() : QHash<int, QByteArray>();
    for (auto it = names.cbegin(); it != names.cend(); ++it)
        m_roles.insert(it.value(), it.key());
}

void CameraMarks::read(Entry &entry, int row) const
{
    const bool own = value(row, "cameraIDRole").toString() == m_cameraID &&
                     value(row, "relayPathRole").toString() == m_relayPath;
    entry.state = own ? State::Own : State::Foreign;
    entry.start = value(row, "startTimestampRole").toLongLong();
    // A bookmark that ends before its start is shown as a moment.
    entry.end = std::max(entry.start, value(row, "endTimestampRole").toLongLong());
}

QVariant CameraMarks::value(int row, const QByteArray &roleName) const
{
    return m_source ? m_source->data(m_source->index(row, 0), m_roles.value(roleName)) : QVariant();
}

} // namespace workbench
