#pragma once

#include <QtCore/QFileSystemWatcher>
#include <QtCore/QHash>
#include <QtCore/QMutex>
#include <QtCore/QObject>
#include <QtCore/QTimer>
#include <QtQml/QQmlAbstractUrlInterceptor>

namespace workbench {

/// The local files that QML engines load. Emits changed() when one of them is saved, and when QML
/// files appear or vanish beside them.
class LoadedFiles : public QObject, public QQmlAbstractUrlInterceptor
{
    Q_OBJECT

public:
    LoadedFiles();

    /// Notes the file. Engines also call it from their loading threads.
    QUrl intercept(const QUrl &url, DataType type) override;
    void note(const QString &path);
    void clear();

Q_SIGNALS:
    void changed();

private:
    void watch(const QString &path);
    void check();

    QFileSystemWatcher m_watcher;
    QTimer m_pause; ///< an editor saves in several steps
    QMutex m_mutex;
    QHash<QString, QString> m_states; ///< of files and folders, by path; guarded by m_mutex
};

} // namespace workbench
