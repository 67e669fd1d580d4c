#pragma once

#include <QtCore/QAbstractItemModel>
#include <QtCore/QStringList>

#include <utility>

/// Records a model's signals about rows as words: "+0-1" for rows inserted, "-2-2" removed, "~1-3"
/// changed, "~1-3/2" changed in two roles. Must be deleted before the model.
class RowChanges : public QObject
{
public:
    explicit RowChanges(const QAbstractItemModel &model)
    {
        connect(&model, &QAbstractItemModel::rowsInserted, this,
                [this](const QModelIndex &, int first, int last) { note(u'+', first, last); });
        connect(&model, &QAbstractItemModel::rowsRemoved, this,
                [this](const QModelIndex &, int first, int last) { note(u'-', first, last); });
        connect(&model, &QAbstractItemModel::dataChanged, this,
                [this](const QModelIndex &first, const QModelIndex &last, const QList<int> &roles) {
                    note(u'~', first.row(), last.row());
                    if (!roles.isEmpty())
                        m_words.last() += u'/' + QString::number(roles.size());
                });
    }

    /// @return the words since the last call
    QString take() { return std::exchange(m_words, {}).join(u' '); }

private:
    void note(QChar sign, int first, int last)
    {
        m_words.append(sign + QString::number(first) + u'-' + QString::number(last));
    }

    QStringList m_words;
};
