#include "LogModel.h"

#include <QtCore/QTime>
#include <QtGui/QClipboard>
#include <QtGui/QGuiApplication>

namespace workbench {

namespace {

constexpr size_t MaxLines = 10'000;

} // namespace

LogModel::LogModel(QObject *parent)
    : QAbstractListModel(parent)
{
    standin::logging::watch([this](const standin::LogLine &line) { append(line); });
}

LogModel::~LogModel()
{
    standin::logging::watch(nullptr);
}

void LogModel::clear()
{
    beginResetModel();
    m_lines.clear();
    endResetModel();
    Q_EMIT countChanged();
}

void LogModel::copy(int row) const
{
    if (row < 0 || row >= count())
        return;
    const Line &line = at(row);
    QGuiApplication::clipboard()->setText(
        QStringList{line.clock, line.severity, line.place, line.text}.join(QLatin1Char(' ')));
}

void LogModel::append(const standin::LogLine &line)
{
    if (m_lines.size() == MaxLines) {
        beginRemoveRows({}, 0, 0);
        m_lines.pop_front();
        endRemoveRows();
    }
    const int row = rowCount();
    beginInsertRows({}, row, row);
    m_lines.push_back({QTime::currentTime().toString(QStringLiteral("hh:mm:ss.zzz")),
                       QString::fromLatin1(line.severity),
                       QStringLiteral("%1:%2").arg(QString::fromUtf8(line.file)).arg(line.line),
                       QString::fromUtf8(line.text)});
    endInsertRows();
    Q_EMIT countChanged();
}

int LogModel::rowCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : static_cast<int>(m_lines.size());
}

QVariant LogModel::data(const QModelIndex &index, int role) const
{
    if (!checkIndex(index, CheckIndexOption::IndexIsValid))
        return {};
    const Line &line = at(index.row());
    switch (role) {
    case ClockRole:
        return line.clock;
    case SeverityRole:
        return line.severity;
    case PlaceRole:
        return line.place;
    case Qt::DisplayRole:
    case LineRole:
        return line.text;
    default:
        return {};
    }
}

QHash<int, QByteArray> LogModel::roleNames() const
{
    return {
        {ClockRole, "clock"}, {SeverityRole, "severity"}, {PlaceRole, "place"}, {LineRole, "line"}};
}

bool LogModel::contains(int row, const QString &text) const
{
    const Line &line = at(row);
    return line.text.contains(text, Qt::CaseInsensitive) ||
           line.place.contains(text, Qt::CaseInsensitive) ||
           line.severity.contains(text, Qt::CaseInsensitive);
}

QString LogModel::kindAt(int row) const
{
    return at(row).severity;
}

} // namespace workbench
