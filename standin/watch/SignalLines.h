#pragma once

#include <QtCore/QMetaMethod>
#include <QtCore/QObject>
#include <QtCore/QStringList>

#include <functional>
#include <utility>

/// Every signal of an object's own class as one line of text, in the order of emission:
/// "addBookmarksResponsed(Camera A1,Camera B1)".
class SignalLines : public QObject
{
public:
    explicit SignalLines(QObject *object);

    /// The lines since the last call.
    QStringList take() { return std::exchange(m_lines, {}); }

    /// Called after each signal, from inside the emission.
    std::function<void(const QString &line)> onSignal;

    // Catches all signals without a slot for each of them.
    int qt_metacall(QMetaObject::Call call, int id, void **arguments) override;

private:
    QList<QMetaMethod> m_signals;
    QStringList m_lines;
};
