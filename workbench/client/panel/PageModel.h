#pragma once

#include "RecordSelection.h"

#include <QtCore/QAbstractListModel>
#include <QtQml/qqmlregistration.h>

namespace workbench {

/// One page of bookmarks as a list model. A new page replaces the values of the rows, so that the
/// view keeps its position and its delegates.
class PageModel : public QAbstractListModel
{
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(int count READ count NOTIFY countChanged)
    /// The selected bookmarks; not owned.
    Q_PROPERTY(workbench::RecordSelection *selection READ selection WRITE setSelection NOTIFY
                   selectionChanged REQUIRED)

public:
    enum Role {
        RecordRole = Qt::UserRole, ///< the display record
        SelectedRole,
        SectionTitleRole, ///< the title of the row's group
        SectionCountRole, ///< rows in the group on this page at its first row, 0 elsewhere
    };

    using QAbstractListModel::QAbstractListModel;

    int count() const { return static_cast<int>(m_rows.size()); }
    RecordSelection *selection() const { return m_selection; }
    void setSelection(RecordSelection *selection);

    /// Shows a page.
    /// @param groups "bookmarkGroupList" of a page
    Q_INVOKABLE void setGroups(const QVariantList &groups);

    /// @return the record of a row; empty if the row does not exist
    Q_INVOKABLE QVariantMap recordAt(int row) const;
    /// @return the records of a range of rows; ends are included and in any order
    Q_INVOKABLE QVariantList recordsBetween(int first, int last) const;

    int rowCount(const QModelIndex &parent = {}) const override;
    QVariant data(const QModelIndex &index, int role) const override;
    QHash<int, QByteArray> roleNames() const override;

Q_SIGNALS:
    void countChanged();
    void selectionChanged();

private:
    struct Row
    {
        QVariantMap record;
        QString title;
        int sectionCount = 0;
    };
    void noteSelection();

    QList<Row> m_rows;
    RecordSelection *m_selection = nullptr;
};

} // namespace workbench
