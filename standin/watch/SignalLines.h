#pragma once

#include "SignalReceiver.h"

#include <QtCore/QStringList>

#include <functional>
#include <utility>

/// Every signal of an object's own class as one line of text, in the order of emission:
/// "addBookmarksResponsed(Camera A1,Camera B1)".
class SignalLines
{
public:
    explicit SignalLines(QObject *object);

    /// The lines since the last call.
    QStringList take() { return std::exchange(m_lines, {}); }

    /// Called after each signal, from inside the emission.
    std::function<void(const QString &line)> onSignal;

private:
    QStringList m_lines;
    standin::SignalReceiver m_receiver;
};
