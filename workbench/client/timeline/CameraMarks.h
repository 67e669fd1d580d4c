#pragma once

#include <QtCore/QAbstractItemModel>
#include <QtCore/QPointer>

#include <vector>

namespace workbench {

/// A bookmark of the camera. Times are milliseconds since the epoch.
struct Mark
{
    qint64 start;
    qint64 end;
    int row; ///< in the timeline model
};

/// Selects the bookmarks of one camera from a timeline model, which has those of a whole location.
/// Caches the rows: a row is read again only if it changes.
class CameraMarks : public QObject
{
    Q_OBJECT

public:
    explicit CameraMarks(QObject *parent = nullptr);

    QAbstractItemModel *source() const { return m_source; }
    /// @param source not owned; null for none; may be destroyed at any time
    void setSource(QAbstractItemModel *source);
    void setCamera(const QString &cameraID, const QString &relayPath);

    /// @return the bookmarks sorted by start; reads changed rows
    const std::vector<Mark> &marks();
    /// @param mark index in marks()
    /// @return the text of a role of the model
    QString text(int mark, const QByteArray &roleName);

Q_SIGNALS:
    /// marks() has changed. Emitted for every change of a row.
    void outdated();

private:
    enum class State : quint8 {
        Unread,
        Foreign, ///< of another camera
        Own
    };
    struct Entry
    {
        qint64 start = 0;
        qint64 end = 0;
        State state = State::Unread;
    };

    void readAll();
    void noteInserted(const QModelIndex &parent, int first, int last);
    void noteRemoved(const QModelIndex &parent, int first, int last);
    void noteChanged(const QModelIndex &first, const QModelIndex &last);
    void makeRoom();
    void markOutdated();
    void readRoles();
    void read(Entry &entry, int row) const;
    QVariant value(int row, const QByteArray &roleName) const;

    QPointer<QAbstractItemModel> m_source;
    QHash<QByteArray, int> m_roles; ///< of the source, by name
    QString m_cameraID;
    QString m_relayPath;
    std::vector<Entry> m_entries; ///< one for each row of the source, in its order
    // Inserted rows without an entry yet. An answer inserts its rows one by one, mostly at one
    // place; makeRoom() inserts their entries at once.
    int m_newFirst = 0;
    int m_newCount = 0;
    std::vector<Mark> m_marks;
    bool m_outdated = false;
};

} // namespace workbench
