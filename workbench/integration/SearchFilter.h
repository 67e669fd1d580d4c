#pragma once

#include <QtCore/QSortFilterProxyModel>
#include <QtCore/QStringList>
#include <QtQml/qqmlregistration.h>

#include <functional>

namespace workbench {

/// A model whose rows can be searched without formatting them.
class Searchable
{
public:
    virtual ~Searchable() = default;
    using Matcher = std::function<bool(int row)>;

    /// @return true if the row contains the text, ignoring case
    virtual bool contains(int row, const QString &text) const = 0;
    /// Returns a function that decides whether a row matches the user's text, by default whether
    /// the row contains it.
    /// @param error set to a message if the text is invalid
    /// @return null if the text is invalid
    virtual Matcher matcher(const QString &text, QString * /*error*/) const
    {
        return [this, text](int row) { return text.isEmpty() || contains(row, text); };
    }
    /// @return the kind of the row, for SearchFilter::hiddenKinds
    virtual QString kindAt(int row) const = 0;
};

/// The rows of a searchable model that match a text and are not of a hidden kind.
class SearchFilter : public QSortFilterProxyModel
{
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(QAbstractItemModel *source READ sourceModel WRITE setSource NOTIFY sourceChanged)
    /// Empty: all rows.
    Q_PROPERTY(QString text READ text WRITE setText NOTIFY textChanged)
    /// The error in the text, or an empty text. An invalid text does not change the rows.
    Q_PROPERTY(QString error READ error NOTIFY errorChanged)
    /// The kinds of rows to leave out.
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

    /// @return the row in the source model, or -1
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
    void updateMatcher();

    const Searchable *m_searchable = nullptr; ///< the source model
    Searchable::Matcher m_matcher;
    QString m_text;
    QString m_error;
    QStringList m_hiddenKinds;
};

} // namespace workbench
