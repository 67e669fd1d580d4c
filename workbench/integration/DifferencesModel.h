#pragma once

#include "Comparison.h"

#include <QtCore/QAbstractListModel>
#include <QtCore/QSet>
#include <QtQml/qqmlregistration.h>

namespace workbench {

/// The differences of a comparison. Those that follow from another one are folded into its row,
/// until the user unfolds them.
class DifferencesModel : public QAbstractListModel
{
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("A recording has its own")

public:
    enum Role {
        LineRole = Qt::UserRole + 1, ///< of the recording
        DescriptionRole,
        FollowsRole,   ///< from the difference above
        FollowersRole, ///< how many follow from it
        UnfoldedRole,
    };
    Q_ENUM(Role)

    using QAbstractListModel::QAbstractListModel;

    void show(const QList<Difference> &differences);
    /// Unfolds or folds the differences that follow from the one of a row.
    Q_INVOKABLE void toggle(int row);

    int rowCount(const QModelIndex &parent = {}) const override;
    QVariant data(const QModelIndex &index, int role) const override;
    QHash<int, QByteArray> roleNames() const override;

private:
    QList<Difference> m_differences;
    QList<QList<int>> m_followers; ///< by index of the difference
    QList<int> m_rows;             ///< indices of the differences that are shown
    QSet<int> m_unfolded;          ///< indices
};

} // namespace workbench
