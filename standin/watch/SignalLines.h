#pragma once

#include "SignalReceiver.h"

#include <QtCore/QStringList>

#include <functional>
#include <utility>

/// Records every signal of an object's own class as a line of text, in the order of emission:
/// "addBookmarksResponsed(Camera A1,Camera B1)".
class SignalLines
{
public:
    explicit SignalLines(QObject *object);

    /// @return the lines since the last call
    QStringList take() { return std::exchange(m_lines, {}); }

    /// Called with each line, inside the emission. May be empty.
    std::function<void(const QString &line)> onSignal;

private:
    QStringList m_lines;
    standin::SignalReceiver m_receiver;
};
