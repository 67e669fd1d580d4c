#pragma once

#include <QtCore/QAbstractItemModel>
#include <QtCore/QPointer>

#include <vector>

namespace workbench {

/// One bookmark of the camera. Times in milliseconds since the epoch.
struct Mark
{
    qint64 start;
    qint64 end;
    int row; ///< in the timeline model
};

/// The bookmarks of one camera out of a timeline model, which has those of a whole location. Each
/// row of the model is read once, however often others come and go around it.
class CameraMarks : public QObject
{
    Q_OBJECT

public:
    explicit CameraMarks(QObject *parent = nullptr);

    QAbstractItemModel *source() const { return m_source; }
    /// Not owned; null for none. It may die at any time.
    void setSource(QAbstractItemModel *source);
    void setCamera(const QString &cameraID, const QString &relayPath);

    /// In order of start. What has changed is read now.
    const std::vector<Mark> &marks();
    /// What the model has for a mark, given by its place in marks(), by the role's name.
    QString text(int mark, const QByteArray &roleName);

Q_SIGNALS:
    /// marks() is no longer what it was. Emitted for every change of a row.
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
    // An answer comes row by row, and mostly in order: room for it is made once.
    int m_newFirst = 0;
    int m_newCount = 0;
    std::vector<Mark> m_marks;
    bool m_outdated = false;
};

} // namespace workbench
