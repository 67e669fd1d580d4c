#pragma once

#include <QtCore/QObject>
#include <QtCore/QTimer>

class QQuickWindow;

namespace workbench {

class WorkbenchContext;

/// One picture of the window, as soon as it shows the stations' first data.
class Screenshot : public QObject
{
    Q_OBJECT

public:
    /// Window and bench are not owned and must outlive this object.
    Screenshot(QQuickWindow &window, const WorkbenchContext &bench, const QString &file,
               QObject *parent);

    /// Writes what the window shows as PNG; returns what went wrong, or an empty text.
    static QString write(QQuickWindow &window, const QString &file);

Q_SIGNALS:
    /// Comes once, with what went wrong or an empty text.
    void done(const QString &error);

private:
    void waitForQuiet();
    void take();

    QQuickWindow &m_window;
    const WorkbenchContext &m_bench;
    QString m_file;
    QTimer m_patience;
    QTimer m_quiet; ///< runs while no answer is to come
};

} // namespace workbench
