#pragma once

#include <QtCore/QMutex>
#include <QtCore/QStringList>
#include <QtCore/QtGlobal>

namespace check {

/// Collects Qt's warnings while this object exists, and suppresses all of Qt's messages on standard
/// error. If objects are nested, the innermost one collects.
class QtMessages
{
public:
    QtMessages();
    ~QtMessages();
    Q_DISABLE_COPY_MOVE(QtMessages)

    /// @return the first ten warnings
    QStringList warnings() const;

private:
    static void collect(QtMsgType type, const QMessageLogContext &, const QString &message);

    QtMessages *m_outer;
    QtMessageHandler m_previous;
    mutable QMutex m_mutex; ///< Qt calls the handler in any thread
    QStringList m_warnings;
};

} // namespace check
