#pragma once

#include "SearchFilter.h"
#include "logging/LogControl.h"

#include <QtCore/QAbstractListModel>
#include <QtQml/qqmlregistration.h>

#include <deque>

namespace workbench {

/// The last lines of the host's logging library.
class LogModel : public QAbstractListModel, public Searchable
{
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("Use the property log of the workbench")
    Q_PROPERTY(int count READ count NOTIFY countChanged)

public:
    enum Role {
        ClockRole = Qt::UserRole + 1, ///< local time of day
        SeverityRole,
        PlaceRole, ///< file and line number
        LineRole,  ///< the text
    };
    Q_ENUM(Role)

    explicit LogModel(QObject *parent = nullptr);
    ~LogModel() override;
    Q_DISABLE_COPY_MOVE(LogModel)

    int count() const { return rowCount(); }
    Q_INVOKABLE void clear();
    /// Copies a line to the clipboard, as the log shows it.
    Q_INVOKABLE void copy(int row) const;

    int rowCount(const QModelIndex &parent = {}) const override;
    QVariant data(const QModelIndex &index, int role) const override;
    QHash<int, QByteArray> roleNames() const override;

    bool contains(int row, const QString &text) const override;
    /// @return the severity of a line
    QString kindAt(int row) const override;

Q_SIGNALS:
    void countChanged();

private:
    struct Line
    {
        QString clock;
        QString severity;
        QString place;
        QString text;
    };

    void append(const standin::LogLine &line);
    const Line &at(int row) const { return m_lines[static_cast<size_t>(row)]; }

    std::deque<Line> m_lines;
};

} // namespace workbench
