#include "Screenshot.h"

#include "WorkbenchContext.h"

#include <QtCore/QDir>
#include <QtGui/QImage>
#include <QtQuick/QQuickWindow>

#include <chrono>

namespace workbench {

Screenshot::Screenshot(QQuickWindow &window, const WorkbenchContext &workbench, const QString &file,
                       QObject *parent)
    : QObject(parent)
    , m_window(window)
    , m_workbench(workbench)
    , m_file(file)
{
    // Parts of the window update only a frame or two after an answer.
    m_quiet.setSingleShot(true);
    m_quiet.setInterval(std::chrono::milliseconds(300));
    connect(&m_quiet, &QTimer::timeout, this, &Screenshot::take);
    connect(&m_workbench, &WorkbenchContext::trafficPassed, this, &Screenshot::waitForQuiet);
    m_timeout.setSingleShot(true);
    connect(&m_timeout, &QTimer::timeout, this, [this] {
        Q_EMIT done(
            tr("%1 was not written: the stations did not answer within a minute").arg(m_file));
    });
    m_timeout.start(std::chrono::minutes(1));
}

QString Screenshot::write(QQuickWindow &window, const QString &file)
{
    const QImage image = window.grabWindow();
    return !image.isNull() && image.save(file, "PNG")
               ? QString()
               : tr("%1: can't be written; check the folder and its permissions")
                     .arg(QDir::toNativeSeparators(file));
}

void Screenshot::waitForQuiet()
{
    if (!m_timeout.isActive())
        return;
    if (m_workbench.outstanding() == 0 && m_workbench.hasSentCommand())
        m_quiet.start();
    else
        m_quiet.stop();
}

void Screenshot::take()
{
    m_timeout.stop();
    Q_EMIT done(write(m_window, m_file));
}

} // namespace workbench
