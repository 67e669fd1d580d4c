#pragma once

#include <QtCore/QMutex>
#include <QtCore/QStringList>
#include <QtCore/QtGlobal>

namespace check {

/// Collects what Qt warns of while this object lives, and keeps all of its messages off the
/// standard error channel. Of nested objects the innermost collects.
class QtMessages
{
public:
    QtMessages();
    ~QtMessages();
    Q_DISABLE_COPY_MOVE(QtMessages)

    QStringList warnings() const;

private:
    static void collect(QtMsgType type, const QMessageLogContext &, const QString &message);

    QtMessages *m_outer;
    QtMessageHandler m_previous;
    mutable QMutex m_mutex; ///< any thread may warn
    QStringList m_warnings;
};

} // namespace check
