#include "LoadedFiles.h"

#include <QtCore/QDateTime>
#include <QtCore/QDir>
#include <QtCore/QFileInfo>
#include <QtCore/QLibraryInfo>
#include <QtCore/QUrl>

namespace workbench {

namespace {

/// @return a text that changes when a file is saved or QML files appear in a folder or vanish from
/// it; empty if the path does not exist
QString stateOf(const QString &path)
{
    const QFileInfo info(path);
    if (!info.exists())
        return {};
    if (info.isDir()) {
        const QStringList patterns{QStringLiteral("*.qml"), QStringLiteral("*.js"),
                                   QStringLiteral("*.mjs"), QStringLiteral("qmldir")};
        return QLatin1Char('/') +
               QDir(path).entryList(patterns, QDir::Files).join(QLatin1Char('/'));
    }
    return QStringLiteral("%1 %2").arg(info.lastModified().toMSecsSinceEpoch()).arg(info.size());
}

} // namespace

LoadedFiles::LoadedFiles()
{
    constexpr int Delay = 50; // milliseconds
    m_checkTimer.setSingleShot(true);
    m_checkTimer.setInterval(Delay);
    connect(&m_checkTimer, &QTimer::timeout, this, &LoadedFiles::check);
    const auto wait = [this] { m_checkTimer.start(); };
    connect(&m_watcher, &QFileSystemWatcher::fileChanged, this, wait);
    connect(&m_watcher, &QFileSystemWatcher::directoryChanged, this, wait);
}

QUrl LoadedFiles::intercept(const QUrl &url, DataType /*type*/)
{
    static const QString ownByQt = QLibraryInfo::path(QLibraryInfo::QmlImportsPath);
    const QString path = url.toLocalFile();
    if (!path.isEmpty() && !path.startsWith(ownByQt))
        watchFile(path);
    return url;
}

void LoadedFiles::watchFile(const QString &path)
{
    const QFileInfo info(path);
    if (!info.isFile())
        return;
    const QMutexLocker lock(&m_mutex);
    for (const QString &part : {info.absoluteFilePath(), info.absolutePath()}) {
        if (m_states.contains(part))
            continue;
        m_states.insert(part, stateOf(part));
        QMetaObject::invokeMethod(
            this, [this, part] { watch(part); }, Qt::QueuedConnection);
    }
}

void LoadedFiles::clear()
{
    const QMutexLocker lock(&m_mutex);
    m_states.clear();
}

void LoadedFiles::watch(const QString &path)
{
    m_watcher.addPath(path);
    m_checkTimer.start(); // the file may have changed before the watcher knew it
}

void LoadedFiles::check()
{
    bool differs = false;
    {
        const QMutexLocker lock(&m_mutex);
        for (auto it = m_states.begin(); it != m_states.end(); ++it) {
            const QString state = stateOf(it.key());
            if (state.isEmpty() || state == it.value())
                continue; // the editor is replacing the file
            it.value() = state;
            m_watcher.addPath(it.key()); // the watcher forgets a file that was replaced
            differs = true;
        }
    }
    if (differs)
        Q_EMIT changed();
}

} // namespace workbench
