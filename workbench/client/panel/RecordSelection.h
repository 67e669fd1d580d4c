#pragma once

#include <QtCore/QMap>
#include <QtCore/QObject>
#include <QtCore/QVariant>
#include <QtQml/qqmlregistration.h>

namespace workbench {

/// The bookmarks that the user has selected on any page. Stores display records, because those of
/// other pages are not available when they are edited or deleted.
class RecordSelection : public QObject
{
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(int count READ count NOTIFY changed)

public:
    using QObject::QObject;

    int count() const { return static_cast<int>(m_records.size()); }
    bool contains(const QVariantMap &record) const { return m_records.contains(keyOf(record)); }

    Q_INVOKABLE QVariantList records() const;
    /// Replaces the selection.
    Q_INVOKABLE void setRecords(const QVariantList &records);
    Q_INVOKABLE void add(const QVariantList &records);
    Q_INVOKABLE void remove(const QVariantList &records);
    Q_INVOKABLE void toggle(const QVariantMap &record);
    Q_INVOKABLE void clear() { setRecords({}); }

    /// Replaces the record of a selected bookmark by a newer one; ignores other bookmarks.
    void update(const QVariantMap &record);

Q_SIGNALS:
    void changed();

private:
    using Key = std::pair<QString, QString>; ///< relay path and identifier, which is unique only at
                                             ///< its station
    static Key keyOf(const QVariantMap &record);

    QMap<Key, QVariantMap> m_records;
};

} // namespace workbench
