#pragma once

#include <QtCore/QObject>
#include <QtCore/QPointer>

namespace tessaline {

/// Converts to true while an object exists. Any call out of the library may delete the plug-in's
/// object: a signal, a command, a call of the topology plug-in, a change of a timeline model.
class AliveGuard
{
public:
    explicit AliveGuard(QObject *object)
        : m_object(object)
    {
    }
    explicit operator bool() const { return !m_object.isNull(); }

private:
    QPointer<QObject> m_object;
};

} // namespace tessaline
