#pragma once

#include <QtCore/QSortFilterProxyModel>
#include <QtCore/QStringList>
#include <QtQml/qqmlregistration.h>

#include <functional>

namespace workbench {

/// A model whose rows can be searched without making texts of them.
class Searchable
{
public:
    virtual ~Searchable() = default;
    using Matcher = std::function<bool(int row)>;

    /// Whether the row contains the text, whatever its case.
    virtual bool contains(int row, const QString &text) const = 0;
    /// What a user's text asks of a row, here that it contains the text.
    /// @return null with @p error if the text can't be understood
    virtual Matcher matcher(const QString &text, QString * /*error*/) const
    {
        return [this, text](int row) { return text.isEmpty() || contains(row, text); };
    }
    /// A word by which rows are chosen.
    virtual QString kindAt(int row) const = 0;
};

/// The rows of a searchable model that contain a text and are of certain kinds.
class SearchFilter : public QSortFilterProxyModel
{
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(QAbstractItemModel *source READ sourceModel WRITE setSource NOTIFY sourceChanged)
    /// Empty: all rows.
    Q_PROPERTY(QString text READ text WRITE setText NOTIFY textChanged)
    /// What is wrong with the text; the rows are then those of the text before.
    Q_PROPERTY(QString error READ error NOTIFY errorChanged)
    /// Rows of these kinds are left out.
    Q_PROPERTY(
        QStringList hiddenKinds READ hiddenKinds WRITE setHiddenKinds NOTIFY hiddenKindsChanged)
    Q_PROPERTY(int count READ count NOTIFY countChanged)

public:
    explicit SearchFilter(QObject *parent = nullptr);

    void setSource(QAbstractItemModel *model);
    QString text() const { return m_text; }
    void setText(const QString &text);
    QString error() const { return m_error; }
    QStringList hiddenKinds() const { return m_hiddenKinds; }
    void setHiddenKinds(const QStringList &kinds);
    int count() const { return rowCount(); }

    /// The row of the source model; -1 for no row.
    Q_INVOKABLE int sourceRow(int row) const { return mapToSource(index(row, 0)).row(); }
    /// The reverse; -1 if the row is left out.
    Q_INVOKABLE int rowOf(int sourceRow) const;

Q_SIGNALS:
    void sourceChanged();
    void textChanged();
    void errorChanged();
    void hiddenKindsChanged();
    void countChanged();

protected:
    bool filterAcceptsRow(int sourceRow, const QModelIndex &sourceParent) const override;

private:
    void understand();

    const Searchable *m_searchable = nullptr; ///< the source model
    Searchable::Matcher m_matcher;
    QString m_text;
    QString m_error;
    QStringList m_hiddenKinds;
};

} // namespace workbench
