#pragma once

#include <QtCore/QObject>
#include <QtCore/QPointer>

namespace tessaline {

/// True while an object exists. Each call out of the library may delete the plug-in's object: a
/// signal, a command to the host, a question to the topology plug-in, a change of a timeline model.
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
