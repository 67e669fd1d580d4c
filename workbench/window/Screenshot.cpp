#include "Screenshot.h"

#include "WorkbenchContext.h"

#include <QtCore/QDir>
#include <QtGui/QImage>
#include <QtQuick/QQuickWindow>

#include <chrono>

namespace workbench {

Screenshot::Screenshot(QQuickWindow &window, const WorkbenchContext &bench, const QString &file,
                       QObject *parent)
    : QObject(parent)
    , m_window(window)
    , m_bench(bench)
    , m_file(file)
{
    // Parts of the window gather what came and show it a frame or two later.
    m_quiet.setSingleShot(true);
    m_quiet.setInterval(std::chrono::milliseconds(300));
    connect(&m_quiet, &QTimer::timeout, this, &Screenshot::take);
    connect(&m_bench, &WorkbenchContext::trafficPassed, this, &Screenshot::waitForQuiet);
    m_patience.setSingleShot(true);
    connect(&m_patience, &QTimer::timeout, this,
            [this] { Q_EMIT done(tr("%1: the stations did not answer in time").arg(m_file)); });
    m_patience.start(std::chrono::minutes(1));
}

QString Screenshot::write(QQuickWindow &window, const QString &file)
{
    const QImage image = window.grabWindow();
    return !image.isNull() && image.save(file, "PNG")
               ? QString()
               : tr("%1: cannot be written").arg(QDir::toNativeSeparators(file));
}

void Screenshot::waitForQuiet()
{
    if (!m_patience.isActive())
        return;
    if (m_bench.outstanding() == 0 && m_bench.hasAsked())
        m_quiet.start();
    else
        m_quiet.stop();
}

void Screenshot::take()
{
    m_patience.stop();
    Q_EMIT done(write(m_window, m_file));
}

} // namespace workbench
