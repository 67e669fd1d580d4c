#pragma once

#include <QtCore/QFileSystemWatcher>
#include <QtCore/QHash>
#include <QtCore/QMutex>
#include <QtCore/QObject>
#include <QtCore/QTimer>
#include <QtQml/QQmlAbstractUrlInterceptor>

namespace workbench {

/// Watches the local files that QML engines load.
class LoadedFiles : public QObject, public QQmlAbstractUrlInterceptor
{
    Q_OBJECT

public:
    LoadedFiles();

    /// Watches the file that an engine is about to load. Thread-safe, as engines load files in
    /// threads of their own.
    QUrl intercept(const QUrl &url, DataType type) override;
    /// Watches a file and its folder. Thread-safe; ignores anything but a file.
    void watchFile(const QString &path);
    /// Stops watching.
    void clear();

Q_SIGNALS:
    /// A watched file was saved, or QML files beside it appeared or vanished.
    void changed();

private:
    void watch(const QString &path);
    void check();

    QFileSystemWatcher m_watcher;
    QTimer m_checkTimer; ///< waits for the end of a save, which takes several steps
    QMutex m_mutex;
    QHash<QString, QString> m_states; ///< of watched files and folders, by path; guarded by m_mutex
};

} // namespace workbench
