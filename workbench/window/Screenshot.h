#pragma once

#include <QtCore/QObject>
#include <QtCore/QTimer>

class QQuickWindow;

namespace workbench {

class WorkbenchContext;

/// Takes one picture of the window when it shows the stations' bookmarks.
class Screenshot : public QObject
{
    Q_OBJECT

public:
    /// @param window,workbench not owned; must outlive this object
    Screenshot(QQuickWindow &window, const WorkbenchContext &workbench, const QString &file,
               QObject *parent);

    /// Writes a picture of the window as PNG.
    /// @return an error message with the file, or an empty text
    static QString write(QQuickWindow &window, const QString &file);

Q_SIGNALS:
    /// Emitted once.
    /// @param error a message with the file, or an empty text
    void done(const QString &error);

private:
    void waitForQuiet();
    void take();

    QQuickWindow &m_window;
    const WorkbenchContext &m_workbench;
    QString m_file;
    QTimer m_timeout;
    QTimer m_quiet; ///< runs while no answer is outstanding
};

} // namespace workbench
