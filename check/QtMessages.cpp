#include "QtMessages.h"

#include <atomic>

namespace check {

namespace {

std::atomic<QtMessages *> s_innermost{nullptr};

} // namespace

QtMessages::QtMessages()
    : m_outer(s_innermost.exchange(this))
    , m_previous(qInstallMessageHandler(collect))
{
}

QtMessages::~QtMessages()
{
    qInstallMessageHandler(m_previous);
    s_innermost = m_outer;
}

QStringList QtMessages::warnings() const
{
    const QMutexLocker locker(&m_mutex);
    return m_warnings;
}

void QtMessages::collect(QtMsgType type, const QMessageLogContext &, const QString &message)
{
    constexpr qsizetype MaxWarnings = 10;
    QtMessages *const messages = s_innermost;
    if (!messages || type == QtDebugMsg || type == QtInfoMsg)
        return;
    const QMutexLocker locker(&messages->m_mutex);
    if (messages->m_warnings.size() < MaxWarnings)
        messages->m_warnings.append(message);
}

} // namespace check
