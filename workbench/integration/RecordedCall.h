#pragma once

#include "RecordedPlugin.h"

#include <QtQml/QJSEngine>

namespace workbench {

/// Calls an object's methods with recorded arguments, as QML does: the JavaScript engine chooses
/// the overload and converts the values.
class RecordedCall final : private CallObserver
{
public:
    /// @param target not owned
    explicit RecordedCall(QObject &target);

    /// Calls a method.
    /// @return the result in the form of a recording; a map with "exception" if the engine throws
    QVariant make(const QString &method, const QVariantList &arguments);

private:
    quint64 beginCall(const QString & /*method*/, const QVariantList & /*arguments*/) override
    {
        return 0;
    }
    void end(quint64 /*call*/, const QVariant &result) override { m_result = result; }

    RecordedPlugin m_recorded;
    QJSEngine m_engine;
    QJSValue m_target;
    QVariant m_result;
};

} // namespace workbench
