#pragma once

#include <QtCore/QObject>
#include <QtCore/QVariant>
#include <QtQml/QJSEngine>

namespace workbench {

/// Calls an object's methods with recorded arguments, through the same JavaScript that recorded
/// them: the engine chooses the overload and converts the values as it did then.
class RecordedCall : public QObject
{
    Q_OBJECT

public:
    /// @param target not owned
    explicit RecordedCall(QObject &target);

    /// The result as a recording has it.
    QVariant make(const QString &method, const QVariantList &arguments);

    // What recorded.mjs tells.
    Q_INVOKABLE double beginCall(const QString & /*method*/, const QVariantList & /*arguments*/)
    {
        return 0;
    }
    Q_INVOKABLE void end(double /*call*/, const QVariant &result);

private:
    QJSEngine m_engine;
    QJSValue m_target;
    QVariant m_result;
};

} // namespace workbench
