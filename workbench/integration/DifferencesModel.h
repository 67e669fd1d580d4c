#pragma once

#include "Comparison.h"

#include <QtCore/QAbstractListModel>
#include <QtCore/QSet>
#include <QtQml/qqmlregistration.h>

namespace workbench {

/// The differences of a comparison as a list model. A difference that follows from another one is
/// hidden until the user unfolds that row.
class DifferencesModel : public QAbstractListModel
{
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("A recording has its own")

public:
    enum Role {
        LineRole = Qt::UserRole + 1, ///< of the recording
        DescriptionRole,
        FollowsRole,   ///< true if it follows from a difference above
        FollowersRole, ///< number of differences that follow from it
        UnfoldedRole,
    };
    Q_ENUM(Role)

    using QAbstractListModel::QAbstractListModel;

    void show(const QList<Difference> &differences);
    /// Shows or hides the differences that follow from that of a row.
    Q_INVOKABLE void toggle(int row);

    int rowCount(const QModelIndex &parent = {}) const override;
    QVariant data(const QModelIndex &index, int role) const override;
    QHash<int, QByteArray> roleNames() const override;

private:
    QList<Difference> m_differences;
    QList<QList<int>> m_followers; ///< by index of the difference
    QList<int> m_rows;             ///< indexes of the shown differences
    QSet<int> m_unfolded;          ///< indexes of differences with shown followers
};

} // namespace workbench
